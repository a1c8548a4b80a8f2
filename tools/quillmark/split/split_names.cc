#include "split/split_names.h"

#include <algorithm>

#include "platform/text/ascii_case.h"
#include "platform/text/text_encoding.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

// Leaves room for a number and an extension in the 255 bytes of a file name.
constexpr std::size_t kLongestName = 200;

std::string SafeName(const std::string& name) {
  std::string safe = WithoutHidden(ValidUtf8Prefix(name.substr(0, kLongestName)));
  std::replace_if(
      safe.begin(), safe.end(), [](char c) { return c == '/' || c == '\\'; }, '_');
  // A leading dot would hide the file, a leading hyphen make it an option of other commands.
  if (!safe.empty() && (safe[0] == '.' || safe[0] == '-')) safe[0] = '_';
  return safe;
}

std::string LowerCased(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ToLowerAscii);
  return text;
}

}  // namespace

std::string SplitNames::NameFor(const std::string& post_script_name, const std::string& fallback,
                                const std::string& extension) {
  std::string stem = SafeName(post_script_name);
  if (stem.empty()) stem = fallback;
  const auto [taken, is_free] = next_numbers_.try_emplace(LowerCased(stem), 2);
  if (is_free) return stem + extension;
  std::string name;
  do {
    name = stem + "-" + std::to_string(taken->second++);
  } while (!next_numbers_.try_emplace(LowerCased(name), 2).second);
  return name + extension;
}

}  // namespace quillmark::tool
