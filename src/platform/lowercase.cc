// Unicode's full lower-case mapping without a locale, from a generated table. Only a capital sigma depends on
// its surroundings: it is final when a cased letter stands before it and none behind it in the same word,
// marks and signs such as accents and apostrophes being passed over.
#include <algorithm>
#include <cstddef>
#include <iterator>

#include "platform/lowercase_table.h"
#include "platform/text_encoding.h"

namespace quillmark {
namespace {

constexpr char32_t kCapitalIWithDot = 0x0130;
constexpr char32_t kCombiningDot = 0x0307;
constexpr char32_t kCapitalSigma = 0x03A3;
constexpr char32_t kSmallSigma = 0x03C3;
constexpr char32_t kFinalSigma = 0x03C2;

// The table's entry that could hold `code`: the last one that does not begin behind it.
template <typename Entry, std::size_t N>
const Entry* Find(const Entry (&table)[N], char32_t code) {
  const Entry* const next = std::upper_bound(std::begin(table), std::end(table), code,
                                             [](char32_t c, const Entry& entry) { return c < entry.first; });
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

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
char32_t Combine(char16_t high, char16_t low) { return 0x10000 + (high - 0xD800u) * 0x400 + (low - 0xDC00u); }

// The character that begins at `text`'s start; a lone surrogate counts as one.
char32_t First(std::u16string_view text) {
  const bool is_pair = text.size() > 1 && IsHighSurrogate(text[0]) && IsLowSurrogate(text[1]);
  return is_pair ? Combine(text[0], text[1]) : text[0];
}

void Append(std::u16string& text, char32_t code) {
  if (code > 0xFFFF) {
    text.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
  } else {
    text.push_back(static_cast<char16_t>(code));
  }
}

// True when the first character of `text` that counts has case.
bool BeginsCased(std::u16string_view text) {
  while (!text.empty()) {
    const char32_t code = First(text);
    if (!Find(lowercase::kCaseIgnorable, code)) return Find(lowercase::kCased, code) != nullptr;
    text.remove_prefix(code > 0xFFFF ? 2 : 1);
  }
  return false;
}

}  // namespace

std::u16string LowercaseUtf16(std::u16string_view text) {
  std::u16string lower;
  lower.reserve(text.size());
  bool is_inside_word = false;  // the last character that counts has case
  while (!text.empty()) {
    const char32_t code = First(text);
    text.remove_prefix(code > 0xFFFF ? 2 : 1);
    if (code == kCapitalSigma) {
      Append(lower, is_inside_word && !BeginsCased(text) ? kFinalSigma : kSmallSigma);
    } else if (code == kCapitalIWithDot) {
      Append(lower, U'i');
      Append(lower, kCombiningDot);
    } else {
      Append(lower, Lower(code));
    }
    if (!Find(lowercase::kCaseIgnorable, code)) is_inside_word = Find(lowercase::kCased, code) != nullptr;
  }
  return lower;
}

}  // namespace quillmark
