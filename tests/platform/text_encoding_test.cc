#include "platform/text/text_encoding.h"

#include <gtest/gtest.h>

#include <numeric>

#include "platform/crc32.h"

namespace quillmark {
namespace {

using namespace std::string_literals;

TEST(Utf8, RefusesWhatTheStandardCallsIllFormed) {
  // The edges of each length; around the surrogates; FFFE and FFFF, which are no characters but well-formed.
  for (const std::string& text :
       {"\x7F"s, "A\0B"s, "\xC2\x80"s, "\xDF\xBF"s, "\xE0\xA0\x80"s, "\xED\x9F\xBF"s, "\xEE\x80\x80"s,
        "\xEF\xBF\xBE\xEF\xBF\xBF"s, "\xF0\x90\x80\x80"s, "\xF4\x8F\xBF\xBF"s}) {
    EXPECT_EQ(Utf16ToUtf8(Utf8ToUtf16(text).value()), text);
  }
  for (const std::string sequence : {"\x80", "\xC1\xBF", "\xC2", "\xC2\x41", "\xE0\x9F\xBF", "\xE2\x82",
                                     "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF0\x90\x80",
                                     "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xF0\x90\x41\x80"}) {
    const std::string text = "x\xC3\xA9" + sequence;
    EXPECT_EQ(Utf8ToUtf16(text), std::nullopt) << testing::PrintToString(text);
    EXPECT_EQ(ValidUtf8Prefix(text), "x\xC3\xA9") << testing::PrintToString(text);
  }
}

TEST(Utf16, DropsOneLeadingMarkOnTheWayInAndNoneOnTheWayOut) {
  EXPECT_EQ(Utf8ToUtf16("\xEF\xBB\xBF!\xEF\xBB\xBF"), u"!\uFEFF");
  EXPECT_EQ(Utf16ToUtf8(u"\uFEFF!"), "\xEF\xBB\xBF!");
  for (const auto& lone : {u"\xD834"s, u"\xDD1E"s, u"\xD834!"s, u"\xD834\xD834\xDD1E"s}) {
    EXPECT_EQ(Utf16ToUtf8(u"a" + lone), std::nullopt);
  }
}

TEST(MacRoman, GivesEveryByteItsCharacter) {
  EXPECT_EQ(MacRomanToUtf8("\x80\xDB\xF0\xCA\xBD\xFF"), "\u00C4\u20AC\uF8FF\u00A0\u03A9\u02C7");
  std::string bytes(0x100, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  EXPECT_EQ(Crc32(0, AsBytes(MacRomanToUtf8(bytes))), 3793643576u) << "as the published table has them";
}

TEST(Japanese, DecodesSingleAndDoubleBytes) {
  const std::optional<std::string> none;
  const struct {
    std::string text;
    std::optional<std::string> shift_jis, mac_japanese;
  } rows[] = {
      {"\xA1\xDF", "\uFF61\uFF9F", "\uFF61\uFF9F"},  // half-width katakana
      {"\x80", none, "\\"},
      {"\xA0", none, "\u00A0"},
      {"\xFD\xFE\xFF", none, "\u00A9\u2122\u2026"},
      {"\x81\x5C\x81\x60\x81\x61\x81\x7C", "\u2015\u301C\u2016\u2212", "\u2015\u301C\u2016\u2212"},
      {"\x95\x5C\x5C", "\u8868\\", "\u8868\u00A5"},  // a trail byte that looks like a backslash
      {"a\x96", none, none},
      {"\x96\x20", none, none},
      {"\x96\xBE\x85\x40\x92\xA9", none, none}  // one bad among good
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ShiftJisToUtf8(row.text), row.shift_jis) << testing::PrintToString(row.text);
    EXPECT_EQ(MacJapaneseToUtf8(row.text), row.mac_japanese) << testing::PrintToString(row.text);
  }
  int characters = 0;
  for (int code = 0x8000; code < 0x10000; ++code) {
    const auto units =
        ShiftJisToUtf16(std::string{static_cast<char>(code / 0x100), static_cast<char>(code % 0x100)});
    if (units && units->size() == 1) ++characters;
  }
  EXPECT_EQ(characters, 6879) << "the whole of JIS X 0208";
}

TEST(Lowercase, FollowsUnicode) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"\u00C0\u00D6\u00D7\u00D8\u00DE\u00DF\u00FF", u"\u00E0\u00F6\u00D7\u00F8\u00FE\u00DF\u00FF"},
      {u"\u0100\u0101\u0102\u0178\u01C5\u1E9E\u2126\u212A", u"\u0101\u0101\u0103\u00FF\u01C6\u00DF\u03C9k"},
      {u"\u0410\u042F\u0401\u10A0\u13A0\u2160\u24B6\uFF21",
       u"\u0430\u044F\u0451\u2D00\uAB70\u2170\u24D0\uFF41"},
      {u"\U00010400\U00010427\U00010428\U0001E900", u"\U00010428\U0001044F\U00010428\U0001E922"},
      // Sigma: final behind a letter when no letter follows; marks and apostrophes are passed over.
      {u"\u039F\u03A3\u039F\u03A3 \u03A3", u"\u03BF\u03C3\u03BF\u03C2 \u03C3"},
      {u"\u039F\u0301\u03A3\u0301 A", u"\u03BF\u0301\u03C2\u0301 a"},
      {u"\u039F\u03A3'\u039F", u"\u03BF\u03C3'\u03BF"},
      {u"\U00010400\u03A3\U00010400", u"\U00010428\u03C3\U00010428"},
      {u"\u0130\u03A3", u"i\u0307\u03C2"}};
  for (const auto& [text, lower] : rows) EXPECT_EQ(LowercaseUtf16(text), lower);
}

}  // namespace
}  // namespace quillmark
