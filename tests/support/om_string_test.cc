#include "support/om_string.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <type_traits>
#include <utility>

#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "platform/cf_ref.h"
#include "platform/resource_manager.h"

namespace quillmark {
namespace {

CFRef<CFStringRef> FromUtf8(const char* text) {
  return Adopt(CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
}

TEST(OmString, ComparesWithoutAsciiCaseWhateverStandsOnTheOtherSide) {
  const OmString om("Bold");
  OmString changeable("bOLD");
  const std::string text("BOLD");
  EXPECT_TRUE(om == changeable && changeable == om && om == "bold" && "bold" == om && om == text &&
              text == om);
  EXPECT_FALSE(om != changeable || om != text);
  EXPECT_TRUE(om != "Bol" && "Bolder" != om);
  // The other operand compares as its text does, not as its address.
  EXPECT_TRUE(om < OmString("BOOK") && om < "book" && om < std::string("BOOK") && "BLACK" < om);
  EXPECT_TRUE(om <= changeable && om >= text && om > "Bol");
  EXPECT_FALSE(om > changeable);
}

TEST(OmString, OrdersAsStrcasecmpDoes) {
  EXPECT_LT(OmString::CompareNoCase("a", "B"), 0);
  EXPECT_LT(OmString::CompareNoCase("A_", "aB"), 0) << "letters compare in lower case";
  EXPECT_GT(OmString::CompareNoCase("\xC3\xA9", "z"), 0) << "bytes are unsigned";
  EXPECT_NE(OmString::CompareNoCase("\xC3\xA9", "\xC3\x89"), 0) << "only ASCII has case";
  EXPECT_EQ(OmString::CompareNoCase(std::string("a\0b", 3), "A"), 0) << "C text ends at a zero byte";
  EXPECT_GT(OmString("ab").CompareNoCase("a"), 0);
}

TEST(OmString, TakesBytesAsTheyAreAndPlatformStringsAsUtf8) {
  EXPECT_EQ(OmString("\x8E").str(), "\x8E");
  EXPECT_EQ(OmString(static_cast<const char*>(nullptr)).str(), "");
  EXPECT_EQ(OmString(FromUtf8("Zo\u00EB").get()).str(), "Zo\u00EB");

  OmString text("old");
  EXPECT_FALSE(text.Set("\xC3", kCFStringEncodingUTF8));
  EXPECT_EQ(text.str(), "old") << "no platform string, no change";
  EXPECT_TRUE(text.Set("\x8E", kCFStringEncodingMacRoman));
  EXPECT_EQ(text.str(), "\u00E9");
  EXPECT_TRUE(text.Set(FromUtf8("plain").get()));
  EXPECT_EQ(text.str(), "plain");

  const UniChar lone_surrogate = 0xDC00;
  const auto broken = Adopt(CFStringCreateWithCharacters(nullptr, &lone_surrogate, 1));
  EXPECT_FALSE(text.Set(broken.get()));
  EXPECT_EQ(text.str(), "");
  text = "old";
  EXPECT_FALSE(text.Set(static_cast<CFStringRef>(nullptr)));
  EXPECT_EQ(text.str(), "");
  EXPECT_EQ(OmString(Adopt(OmString("\x8E").GetCFString(kCFStringEncodingInvalidId)).get()).str(), "\u00E9");
  EXPECT_EQ(OmString("\x8E").GetCFString(kCFStringEncodingUTF8), nullptr);
  EXPECT_EQ(OmString(std::uint32_t{4294967295}).str(), "4294967295");
  EXPECT_EQ(OmString(std::int32_t{-2147483647 - 1}).str(), "-2147483648");
}

TEST(OmString, MakesPascalAndWideForms) {
  const OmString longest(std::string(254, 'x') + "\u00E9" + std::string(44, 'y'));
  const unsigned char* const pascal = longest.GetPascalString();
  EXPECT_EQ(pascal[0], 255);
  EXPECT_EQ(pascal[254], 'x');
  EXPECT_EQ(pascal[255], 0xC3) << "cut inside a sequence";

  std::array<unsigned char, 256> buffer{};
  OmString text;
  text.setPStr(OmString("\x8E*").GetPascalString(buffer.data()));
  EXPECT_EQ(text.str(), "\x8E*");

  EXPECT_STREQ(static_cast<const wchar_t*>(OmString("\u00E9\U0001D11E")), L"\x00E9\xD834\xDD1E");
  EXPECT_STREQ(static_cast<const char*>(OmString("a")), "a");
}

TEST(OmString, CopiesShareTheirTextUntilOneChanges) {
  OmString original("one");
  const unsigned char* const pascal = original.GetPascalString();
  const auto* const wide = static_cast<const wchar_t*>(original);
  EXPECT_EQ(static_cast<const wchar_t*>(original), wide) << "valid until the next change";
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
  const OmString& itself = original;
  original = itself;
  EXPECT_EQ(original.str(), "ONE");
  const OmString taken(std::move(original));
  EXPECT_EQ(taken.str(), "ONE");
  EXPECT_TRUE(original.empty());  // NOLINT(bugprone-use-after-move): stated
  EXPECT_STREQ(static_cast<const wchar_t*>(original), L"");
  static_assert(std::is_nothrow_move_constructible_v<OmString> && sizeof(OmString) <= 5 * sizeof(void*));
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

TEST(OmString, ReplacesFromLeftToRight) {
  const struct {
    const char* text;
    const char* find;
    const char* with;
    const char* replaced;
    int count;
  } rows[] = {{"aXa", "a", "aa", "aaXaa", 2}, {"aaa", "aa", "a", "aa", 1}, {"a--b--", "--", "", "ab", 2},
              {"abc", "d", "x", "abc", 0},    {"abc", "", "x", "abc", 0},  {"Aa", "a", "b", "Ab", 1}};
  for (const auto& row : rows) {
    OmString text(row.text);
    EXPECT_EQ(OmString::ReplaceAll(&text, row.find, row.with), row.count) << row.text;
    EXPECT_EQ(text.str(), row.replaced);
  }
  OmString text("a/b/c");
  EXPECT_EQ(OmString::ReplaceAll(&text, '/', ':'), 2);
  EXPECT_EQ(text.str(), "a:b:c");
}

}  // namespace
}  // namespace quillmark
