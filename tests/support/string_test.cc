// OmString, and the other forms of text beside it.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "platform/core_foundation/cf_ref.h"
#include "support/om_string.h"
#include "support/pascal_string.h"
#include "support/platform_string.h"
#include "support/wide_string.h"

namespace quillmark {
namespace {

TEST(OmString, ComparesWithoutAsciiCaseWhateverStandsOnTheOtherSide) {
  const OmString om("Bold");
  const std::string text("BOLD");
  EXPECT_TRUE(om == OmString("bOLD") && om == "bold" && "bold" == om && om == text && text == om);
  EXPECT_TRUE(om != "Bol" && "Bolder" != om);
  // The other operand compares as its text does, not as its address.
  EXPECT_TRUE(om < OmString("BOOK") && om < "book" && om < std::string("BOOK") && "BLACK" < om);
  EXPECT_TRUE(om <= "BOLD" && !(om < "BOLD"));
  EXPECT_LT(OmString::CompareNoCase("A_", "aB"), 0) << "letters compare in lower case";
  EXPECT_GT(OmString::CompareNoCase("\xC3\xA9", "z"), 0) << "bytes are unsigned";
  EXPECT_NE(OmString::CompareNoCase("\xC3\xA9", "\xC3\x89"), 0) << "only ASCII has case";
  EXPECT_EQ(OmString::CompareNoCase(std::string("a\0b", 3), "A"), 0) << "C text ends at a zero byte";
}

TEST(OmString, TakesBytesAsTheyAreAndPlatformStringsAsUtf8) {
  OmString text("\x8E");
  EXPECT_FALSE(text.Set("\xC3", kCFStringEncodingUTF8));
  EXPECT_EQ(text.str(), "\x8E") << "no platform string, no change";
  EXPECT_EQ(text.GetCFString(kCFStringEncodingUTF8), nullptr);
  EXPECT_EQ(OmString(Adopt(text.GetCFString(kCFStringEncodingInvalidId)).get()).str(), "\u00E9");
  const UniChar lone_surrogate = 0xDC00;
  const auto broken = Adopt(CFStringCreateWithCharacters(nullptr, &lone_surrogate, 1));
  EXPECT_FALSE(text.Set(broken.get()));
  EXPECT_EQ(text.str(), "");
}

TEST(OmString, CopiesShareTheirTextUntilOneChanges) {
  OmString original("a\u00E9Z[");
  const OmString copy(original);
  EXPECT_EQ(copy.c_str(), original.c_str());
  EXPECT_STREQ(static_cast<const wchar_t*>(original), L"a\u00E9Z[");
  EXPECT_EQ(original.ToUpper().str(), "A\u00E9Z[") << "only ASCII has case";
  EXPECT_STREQ(static_cast<const wchar_t*>(original), L"A\u00E9Z[");
  EXPECT_EQ(copy.str(), "a\u00E9Z[");
  EXPECT_EQ(original.ToLower().str(), "a\u00E9z[");
}

TEST(OmString, TrimsAndReplaces) {
  for (const auto& [untrimmed, trimmed] :
       {std::pair("Times \t", "Times"), {"Times\n", "Times\n"}, {" \t ", ""}, {" a b ", " a b"}}) {
    OmString text(untrimmed);
    EXPECT_EQ(text.TrimWhitespaceFromEnd(), untrimmed != std::string(trimmed)) << untrimmed;
    EXPECT_EQ(text.str(), trimmed);
  }
  const std::tuple<const char*, const char*, const char*, const char*, int> rows[] = {
      {"aXa", "a", "aa", "aaXaa", 2}, {"aaa", "aa", "a", "aa", 1}, {"abc", "", "x", "abc", 0}};
  for (const auto& [before, find, with, after, count] : rows) {
    OmString text(before);
    EXPECT_EQ(OmString::ReplaceAll(&text, find, with), count) << before;
    EXPECT_EQ(text.str(), after);
  }
}

TEST(PascalString, HoldsWhatItsLimitLeavesRoomFor) {
  OmString om(std::string(254, 'x') + "\u00E9");
  const unsigned char* const cut = om.GetPascalString();
  EXPECT_TRUE(cut[0] == 255 && cut[255] == 0xC3) << "inside a sequence";
  const auto pascal = [](const char* text) { return reinterpret_cast<const unsigned char*>(text); };
  std::string buffer(11, '#');
  auto* const out = reinterpret_cast<unsigned char*>(buffer.data());
  EXPECT_EQ(CopyPascalStringAsciiLimit(pascal("\7\x1F ~\x7F\xA9zz"), out, 7), 6);
  EXPECT_EQ(buffer, "\6? ~??z####") << "other bytes than ASCII are marked";
  AppendPascalString(out, pascal("\3def"), 9);
  EXPECT_EQ(buffer, "\10? ~??zde##");
  EXPECT_EQ(CopyPascalString(pascal("\3abc"), out, 4), 3);
  AppendPascalString(out, pascal("\1d"), 6);
  EXPECT_EQ(buffer, "\4abcd?zde##") << "both fit exactly";
}

TEST(PlatformString, ReadsExactlyTheGivenBytes) {
  const std::tuple<const char*, unsigned, unsigned, std::optional<std::string>> rows[] = {
      {"Times\xC3", 5, NSUTF8StringEncoding, "Times"},
      {"Times\xC3", 6, NSUTF8StringEncoding, std::nullopt},
      {"ab\0cd", 5, NSMacOSRomanStringEncoding, "ab"},
      {"a\x8E", 1, NSASCIIStringEncoding, "a"},
      {"a", 1, 99, std::nullopt}};
  for (const auto& [bytes, length, encoding, text] : rows) {
    EXPECT_EQ(NSStringWithCStringLengthAndEncoding(bytes, length, encoding), text) << encoding << length;
  }
  char buffer[] = "\xAA\xAA\0###";  // two trade mark signs of 3 bytes each
  EXPECT_TRUE(NVMacRomanToUTF8InPlace(buffer, 5, nullptr));
  EXPECT_EQ(std::string(buffer, 6), std::string("\xE2\x84\xA2\xE2\0#", 6)) << "cut to fit";
}

TEST(WideString, HoldsUnitByUnit) {
  EXPECT_EQ(UTF8ToWide("\u00E9\U0001D11E"), (std::wstring{0xE9, 0xD834, 0xDD1E}));
  EXPECT_EQ(UTF8ToWide("\xC3"), L"");
  EXPECT_EQ(WideToUTF8({0xE9, 0xD834, 0xDD1E}).str(), "\u00E9\U0001D11E");
}

}  // namespace
}  // namespace quillmark
