#include "support/om_string.h"

#include <gtest/gtest.h>

#include <string>

#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/resource_manager/resource_manager.h"

namespace quillmark {
namespace {

TEST(OmString, ComparesWithoutAsciiCaseWhateverStandsOnTheOtherSide) {
  const OmString om("Bold");
  OmString changeable("bOLD");
  const std::string text("BOLD");
  EXPECT_TRUE(om == changeable && changeable == om && om == "bold" && "bold" == om && om == text &&
              text == om);
  EXPECT_TRUE(om != "Bol" && "Bolder" != om);
  // The other operand compares as its text does, not as its address.
  EXPECT_TRUE(om < OmString("BOOK") && om < "book" && om < std::string("BOOK") && "BLACK" < om);
  EXPECT_LT(OmString::CompareNoCase("A_", "aB"), 0) << "letters compare in lower case";
  EXPECT_GT(OmString::CompareNoCase("\xC3\xA9", "z"), 0) << "bytes are unsigned";
  EXPECT_NE(OmString::CompareNoCase("\xC3\xA9", "\xC3\x89"), 0) << "only ASCII has case";
  EXPECT_EQ(OmString::CompareNoCase(std::string("a\0b", 3), "A"), 0) << "C text ends at a zero byte";
}

TEST(OmString, TakesBytesAsTheyAreAndPlatformStringsAsUtf8) {
  EXPECT_EQ(OmString("\x8E").str(), "\x8E");
  OmString text("old");
  EXPECT_FALSE(text.Set("\xC3", kCFStringEncodingUTF8));
  EXPECT_EQ(text.str(), "old") << "no platform string, no change";
  EXPECT_TRUE(text.Set("\x8E", kCFStringEncodingMacRoman));
  EXPECT_EQ(text.str(), "\u00E9");
  const UniChar lone_surrogate = 0xDC00;
  const auto broken = Adopt(CFStringCreateWithCharacters(nullptr, &lone_surrogate, 1));
  EXPECT_FALSE(text.Set(broken.get()));
  EXPECT_EQ(text.str(), "");
  EXPECT_EQ(OmString(Adopt(OmString("\x8E").GetCFString(kCFStringEncodingInvalidId)).get()).str(), "\u00E9");
  EXPECT_EQ(OmString("\x8E").GetCFString(kCFStringEncodingUTF8), nullptr);
}

TEST(OmString, MakesPascalAndWideForms) {
  const OmString longest(std::string(254, 'x') + "\u00E9" + std::string(44, 'y'));
  const unsigned char* const pascal = longest.GetPascalString();
  EXPECT_EQ(pascal[0], 255);
  EXPECT_EQ(pascal[254], 'x');
  EXPECT_EQ(pascal[255], 0xC3) << "cut inside a sequence";

  EXPECT_STREQ(static_cast<const wchar_t*>(OmString("\u00E9\U0001D11E")), L"\x00E9\xD834\xDD1E");
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
  assigned = OmString("four");
  EXPECT_EQ(own[0], 3) << "the source has none: the old bytes stay";
  EXPECT_EQ(assigned.GetPascalString(), own);
  EXPECT_EQ(own[0], 4);
  original.ToUpper();
  EXPECT_EQ(original.GetPascalString(), pascal);
  EXPECT_STREQ(static_cast<const wchar_t*>(original), L"ONE");
  EXPECT_EQ(copy.str(), "one");
}

TEST(OmString, ReplacesFromLeftToRight) {
  const struct {
    const char* text;
    const char* find;
    const char* with;
    const char* replaced;
    int count;
  } rows[] = {{"aXa", "a", "aa", "aaXaa", 2}, {"aaa", "aa", "a", "aa", 1}, {"abc", "", "x", "abc", 0}};
  for (const auto& row : rows) {
    OmString text(row.text);
    EXPECT_EQ(OmString::ReplaceAll(&text, row.find, row.with), row.count) << row.text;
    EXPECT_EQ(text.str(), row.replaced);
  }
}

TEST(OmString, LoadsEntriesOfStringLists) {
  const std::string list("\0\2\5plain\2\x8E!", 11);
  TempFolder folder;
  const auto path = folder.Write("list", ResourceForkBuilder().Add(FourCharCode("STR#"), 200, list).Build());
  FSRef ref;
  ASSERT_EQ(FSPathMakeRef(AsBytes(path.c_str()).data(), &ref, nullptr), noErr);
  ResFileRefNum file = -1;
  ASSERT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &file), noErr);
  const std::int16_t id = 200;
  EXPECT_EQ(OmString(id, std::int16_t{1}).str(), "plain");
  EXPECT_EQ(OmString(id, std::int16_t{2}).str(), "\u00E9!") << "MacRoman";
  OmString text("before");
  text.LoadResource(id, 3);
  EXPECT_EQ(text.str(), "");
  CloseResFile(file);
}

TEST(OmString, EditsAsciiOnly) {
  OmString text("a\xC3\xA9Z[");
  EXPECT_EQ(text.ToUpper().str(), "A\xC3\xA9Z[");
  EXPECT_EQ(text.ToLower().str(), "a\xC3\xA9z[");
  const struct {
    const char* text;
    const char* trimmed;
    bool changed;
  } rows[] = {
      {"Times \t", "Times", true}, {"Times", "Times", false},     {"", "", false},
      {" \t ", "", true},          {"Times\n", "Times\n", false}, {" Times New ", " Times New", true}};
  for (const auto& row : rows) {
    OmString trimmed(row.text);
    EXPECT_EQ(trimmed.TrimWhitespaceFromEnd(), row.changed) << row.text;
    EXPECT_EQ(trimmed.str(), row.trimmed);
  }
}

}  // namespace
}  // namespace quillmark
