#include "knowledge/sorted_pairs.h"

#include <algorithm>
#include <utility>

#include "knowledge/table_values.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/text/text_encoding.h"

namespace quillmark {
namespace {

constexpr std::string_view kKeyStart = "\t\t<key>";
constexpr std::string_view kKeyEnd = "</key>\n\t\t<string>";
constexpr std::string_view kValueEnd = "</string>\n";
constexpr char kAmpersand[] = "&amp;";
constexpr char kMarkName[] = "pairs";
constexpr std::string_view kMark = "<key>pairs</key><true/>";

struct Pair {
  std::string_view key;    // as it is written: "&" is "&amp;"
  std::string_view value;  // ASCII without NUL, "<" and "&", at most 255 bytes
};

// The text before the next "<", when `end` stands there; both are taken.
std::optional<std::string_view> TakeTo(std::string_view& text, std::string_view end) {
  const std::size_t length = std::min(text.find('<'), text.size());
  if (!text.substr(length).starts_with(end)) return std::nullopt;
  const std::string_view taken = text.substr(0, length);
  text.remove_prefix(length + end.size());
  return taken;
}

bool IsPlainValue(std::string_view value) {
  constexpr std::size_t kLongest = 255;
  return value.size() <= kLongest && IsAscii(value) && value.find('&') == std::string_view::npos &&
         value.find('\0') == std::string_view::npos;
}

std::optional<Pair> TakePair(std::string_view& text) {
  if (!text.starts_with(kKeyStart)) return std::nullopt;
  text.remove_prefix(kKeyStart.size());
  const auto key = TakeTo(text, kKeyEnd);
  const auto value = key ? TakeTo(text, kValueEnd) : std::nullopt;
  if (!value) return std::nullopt;
  return Pair{*key, *value};
}

// UTF-8 that is written in one way only: no entity but that of an ampersand.
bool IsPlainKey(std::string_view key) {
  if (!IsAscii(key) && !IsValidUtf8(key)) return false;
  for (std::size_t at = key.find('&'); at != std::string_view::npos; at = key.find('&', at + 1)) {
    if (!key.substr(at).starts_with(kAmpersand)) return false;
  }
  return true;
}

CFRef<CFDictionaryRef> ParseDictionary(const std::string& list) {
  const auto bytes = Adopt<CFDataRef>(new CFDataObject(list));
  const auto tree = Adopt(CFPropertyListCreateFromXMLData(kCFAllocatorDefault, bytes.get(),
                                                          kCFPropertyListMutableContainers, nullptr));
  return Share(AsDictionary(tree.get()));
}

}  // namespace

std::optional<SortedPairs> SortedPairs::Find(CFRef<CFDataRef> list, const char* key) {
  const std::string_view text = list.get()->bytes;
  const std::string opening = "\n\t<key>" + std::string(key) + "</key>\n\t<dict>\n";
  const std::size_t found = text.find(opening);
  if (found == std::string_view::npos) return std::nullopt;

  SortedPairs pairs;
  const std::string_view before = text.substr(0, found + opening.size());
  std::string_view rest = text.substr(before.size());
  std::optional<std::string_view> last_key;
  while (rest.starts_with(kKeyStart)) {
    pairs.starts_.push_back(static_cast<std::uint32_t>(text.size() - rest.size()));
    const auto pair = TakePair(rest);
    if (!pair || !IsPlainKey(pair->key) || !IsPlainValue(pair->value)) return std::nullopt;
    if (last_key && pair->key <= *last_key) return std::nullopt;
    last_key = pair->key;
  }
  if (!last_key) return std::nullopt;

  // Only a reader of the whole list can tell what the pairs stand in, which may be a comment. It reads the
  // list with a mark in their place, and has to find the mark where the pairs are to be.
  pairs.others_ = ParseDictionary(std::string(before) + std::string(kMark) + std::string(rest));
  if (!pairs.others_) return std::nullopt;
  const auto marked = AsDictionary(CFDictionaryGetValue(pairs.others_.get(), TableKey(key).get()));
  if (!marked || CFDictionaryGetCount(marked) != 1) return std::nullopt;
  if (CFDictionaryGetValue(marked, TableKey(kMarkName).get()) != kCFBooleanTrue) return std::nullopt;
  pairs.list_ = std::move(list);
  return pairs;
}

std::optional<std::string> SortedPairs::ValueOf(OmString key) const {
  OmString::ReplaceAll(&key, "&", kAmpersand);  // as it is written in a list
  const std::string& wanted = key.str();
  const auto pair_at = [text = std::string_view(list_.get()->bytes)](std::uint32_t start) {
    std::string_view rest = text.substr(start);
    return *TakePair(rest);
  };
  const auto found = std::partition_point(starts_.begin(), starts_.end(),
                                          [&](std::uint32_t start) { return pair_at(start).key < wanted; });
  if (found == starts_.end()) return std::nullopt;
  const Pair pair = pair_at(*found);
  if (pair.key != wanted) return std::nullopt;
  return std::string(pair.value);
}

}  // namespace quillmark
