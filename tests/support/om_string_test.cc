#include "support/om_string.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/resource_manager/resource_manager.h"

namespace quillmark {
namespace {

TEST(OmString, ComparesWithoutAsciiCaseWhateverStandsOnTheOtherSide) {
  const OmString om("Bold");
  const std::string text("BOLD");
  EXPECT_TRUE(om == OmString("bOLD") && om == "bold" && "bold" == om && om == text && text == om);
  EXPECT_TRUE(om != "Bol" && "Bolder" != om);
  // The other operand compares as its text does, not as its address.
  EXPECT_TRUE(om < OmString("BOOK") && om < "book" && om < std::string("BOOK") && "BLACK" < om);
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
  EXPECT_TRUE(text.Set("\x8E", kCFStringEncodingMacRoman));
  EXPECT_EQ(text.str(), "\u00E9");
  const UniChar lone_surrogate = 0xDC00;
  const auto broken = Adopt(CFStringCreateWithCharacters(nullptr, &lone_surrogate, 1));
  EXPECT_FALSE(text.Set(broken.get()));
  EXPECT_EQ(text.str(), "");
}

TEST(OmString, CopiesShareTheirTextUntilOneChanges) {
  OmString original("one");
  const unsigned char* const pascal = original.GetPascalString();
  const OmString copy(original);
  EXPECT_EQ(copy.c_str(), original.c_str());
  OmString assigned("two");
  const unsigned char* const own = assigned.GetPascalString();
  assigned = original;
  EXPECT_EQ(own[1], 'o') << "both have a buffer: its bytes go over";
  assigned = OmString(std::string(254, 'x') + "\u00E9");
  EXPECT_EQ(own[0], 3) << "the source has none: the old bytes stay";
  EXPECT_EQ(assigned.GetPascalString(), own);
  EXPECT_EQ(own[0], 255);
  EXPECT_EQ(own[255], 0xC3) << "cut inside a sequence";
  original.ToUpper();
  EXPECT_EQ(original.GetPascalString(), pascal);
  EXPECT_STREQ(static_cast<const wchar_t*>(original), L"ONE");
  EXPECT_EQ(copy.str(), "one");
}

TEST(OmString, LoadsEntriesOfStringLists) {
  const std::string list("\0\2\5plain\2\x8E!\1x", 13);
  const TempFolder folder;
  const auto path = folder.Write("list", ResourceForkBuilder().Add(FourCharCode("STR#"), 200, list).Build());
  FSRef ref;
  ASSERT_EQ(FSPathMakeRef(AsBytes(path.c_str()).data(), &ref, nullptr), noErr);
  ResFileRefNum file = -1;
  ASSERT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &file), noErr);
  const char* const entries[] = {"", "plain", "\u00E9!", ""};  // MacRoman; the third lies behind the count
  for (std::int16_t i = 0; i < 4; ++i) EXPECT_EQ(OmString(200, i).str(), entries[i]) << i;
  CloseResFile(file);
}

TEST(OmString, EditsAsciiOnly) {
  OmString text("a\xC3\xA9Z[");
  EXPECT_EQ(text.ToUpper().str(), "A\xC3\xA9Z[");
  EXPECT_EQ(text.ToLower().str(), "a\xC3\xA9z[");
  for (const auto& [untrimmed, trimmed] : {std::pair("Times \t", "Times"),
                                           {"Times", "Times"},
                                           {"", ""},
                                           {" \t ", ""},
                                           {"Times\n", "Times\n"},
                                           {" a b ", " a b"}}) {
    text = untrimmed;
    EXPECT_EQ(text.TrimWhitespaceFromEnd(), untrimmed != std::string(trimmed)) << untrimmed;
    EXPECT_EQ(text.str(), trimmed);
  }
  const std::tuple<const char*, const char*, const char*, const char*, int> rows[] = {
      {"aXa", "a", "aa", "aaXaa", 2}, {"aaa", "aa", "a", "aa", 1}, {"abc", "", "x", "abc", 0}};
  for (const auto& [before, find, with, after, count] : rows) {
    text = before;
    EXPECT_EQ(OmString::ReplaceAll(&text, find, with), count) << before;
    EXPECT_EQ(text.str(), after);
  }
}

}  // namespace
}  // namespace quillmark
