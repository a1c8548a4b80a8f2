#include "commands/suggestion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string_view>

#include "text/printable.h"

namespace quillmark::tool {
namespace {

// Longer words are no mistyped names; the distance costs the product of the lengths.
constexpr std::size_t kLongestWord = 64;

std::string Bare(std::string word) {
  word.erase(0, word.find_first_not_of('-'));
  for (char& c : word) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return word;
}

// How many letters are missing, too many, wrong, or swapped with their neighbour.
std::size_t Distance(std::string_view a, std::string_view b) {
  // counts[i][j]: between the first i letters of a and the first j of b.
  std::vector<std::vector<std::size_t>> counts(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      std::size_t& count = counts[i][j];
      if (i == 0 || j == 0) {
        count = i + j;
        continue;
      }
      count = std::min({counts[i - 1][j] + 1, counts[i][j - 1] + 1,
                        counts[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        count = std::min(count, counts[i - 2][j - 2] + 1);
      }
    }
  }
  return counts[a.size()][b.size()];
}

}  // namespace

std::string Suggestion(const std::string& word, const std::vector<std::string>& names) {
  const std::string given = Bare(word);
  if (given.size() < 2 || given.size() > kLongestWord) return {};
  // As "copy" begins "copies": with another ending.
  const std::string stem = given.substr(0, std::max<std::size_t>(given.size() - 1, 3));
  const auto begins = [&](const std::string& name) { return name.starts_with(stem); };
  const std::string* nearest = nullptr;
  std::size_t least = std::max<std::size_t>(given.size() / 3, 1) + 1;
  for (const std::string& name : names) {
    const std::string bare = Bare(name);
    const std::size_t distance = begins(bare) ? 1 : Distance(given, bare);
    if (distance >= least) continue;
    least = distance;
    nearest = &name;
  }
  return nearest == nullptr ? "" : "; did you mean " + *nearest + "?";
}

CLI::Validator OneOf(const std::string& thing, const std::vector<std::string>& names) {
  const std::string list = CLI::detail::join(names, ", ");
  return {[=](const std::string& value) {
            if (std::find(names.begin(), names.end(), value) != names.end()) return std::string();
            const std::string suggestion = Suggestion(value, names);
            return "no " + thing + " \"" + Printable(value) + '"' + suggestion +
                   (suggestion.empty() ? "; there are " : " there are ") + list;
          },
          CLI::detail::generate_set(names)};
}

}  // namespace quillmark::tool
