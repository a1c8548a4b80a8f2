// Unicode's full lower-case mapping without a locale, from a generated table. Only a capital sigma depends on
// its surroundings: it is final when a cased letter stands before it and none after it in the same word,
// marks and signs such as accents and apostrophes being passed over.
#include <algorithm>
#include <cstddef>
#include <iterator>

#include "platform/text/lowercase_table.h"
#include "platform/text/text_encoding.h"
#include "platform/text/utf16.h"

namespace quillmark {
namespace {

constexpr char32_t kCapitalIWithDot = 0x0130;
constexpr char32_t kCombiningDot = 0x0307;
constexpr char32_t kCapitalSigma = 0x03A3;
constexpr char32_t kSmallSigma = 0x03C3;
constexpr char32_t kFinalSigma = 0x03C2;

// The table's entry that could hold `code`: the last one that begins at or before it.
template <typename Entry, std::size_t N>
const Entry* Find(const Entry (&table)[N], char32_t code) {
  const Entry* const next = std::ranges::upper_bound(table, code, {}, &Entry::first);
  if (next == std::begin(table)) return nullptr;
  const Entry* const entry = std::prev(next);
  return code <= entry->last ? entry : nullptr;
}

char32_t Lower(char32_t code) {
  if (code < 0x80) return code >= U'A' && code <= U'Z' ? code + 0x20 : code;
  const lowercase::Run* const run = Find(lowercase::kRuns, code);
  if (!run || (code - run->first) % run->step != 0) return code;
  return static_cast<char32_t>(static_cast<std::int32_t>(code) + run->distance);
}

// True when the first character of `text` that counts has case.
bool BeginsCased(std::u16string_view text) {
  while (!text.empty()) {
    const char32_t code = FirstCharacter(text);
    if (!Find(lowercase::kCaseIgnorable, code)) return Find(lowercase::kCased, code) != nullptr;
    text.remove_prefix(UnitCount(code));
  }
  return false;
}

}  // namespace

std::u16string LowercaseUtf16(std::u16string_view text) {
  std::u16string lower;
  lower.reserve(text.size());
  bool is_inside_word = false;  // the last character that counts has case
  while (!text.empty()) {
    const char32_t code = FirstCharacter(text);
    text.remove_prefix(UnitCount(code));
    if (code == kCapitalSigma) {
      AppendCharacter(lower, is_inside_word && !BeginsCased(text) ? kFinalSigma : kSmallSigma);
    } else if (code == kCapitalIWithDot) {
      AppendCharacter(lower, U'i');
      AppendCharacter(lower, kCombiningDot);
    } else {
      AppendCharacter(lower, Lower(code));
    }
    if (!Find(lowercase::kCaseIgnorable, code)) is_inside_word = Find(lowercase::kCased, code) != nullptr;
  }
  return lower;
}

}  // namespace quillmark
