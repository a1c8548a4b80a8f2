#include "support/pascal_string.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quillmark {
namespace {

using Buffer = std::array<unsigned char, 32>;

const unsigned char* Pascal(const char* text) { return reinterpret_cast<const unsigned char*>(text); }
std::string TextOf(const Buffer& buffer) { return {buffer.begin() + 1, buffer.begin() + 1 + buffer[0]}; }

TEST(PascalString, CopiesWhatTheLimitLeavesRoomFor) {
  Buffer buffer;
  buffer.fill(0xEE);
  EXPECT_EQ(CopyPascalString(Pascal("\x14ghijghijghijghijghij"), buffer.data(), 10), 9);
  EXPECT_EQ(TextOf(buffer), "ghijghijg");
  EXPECT_EQ(buffer[10], 0xEE);
  EXPECT_EQ(CopyPascalString(Pascal("\3abc"), buffer.data(), 32), 3);
  EXPECT_EQ(TextOf(buffer), "abc");
  EXPECT_EQ(CopyPascalString(nullptr, buffer.data(), 32), 0);
  EXPECT_EQ(TextOf(buffer), "");

  EXPECT_EQ(CopyPascalStringAsciiLimit(Pascal("\7\x1F ~\x7F\xA9zz"), buffer.data(), 7), 6);
  EXPECT_EQ(TextOf(buffer), "? ~??z") << "other bytes than ASCII are marked";
}

TEST(PascalString, AppendsUpToTheLimit) {
  Buffer buffer;
  buffer.fill(0xEE);
  CopyPascalString(Pascal("\3abc"), buffer.data(), 32);
  AppendPascalString(buffer.data(), Pascal("\3def"), 7);
  EXPECT_EQ(TextOf(buffer), "abcdef") << "an exact fit";
  AppendPascalString(buffer.data(), Pascal("\3ghi"), 9);
  EXPECT_EQ(TextOf(buffer), "abcdefgh");
  EXPECT_EQ(buffer[9], 0xEE);
}

TEST(PascalString, CTextAlwaysEnds) {
  std::array<char, 4> buffer = {'#', '#', '#', '#'};
  strncpyNULLTerminate(buffer.data(), "abcdef", 3);
  EXPECT_STREQ(buffer.data(), "ab");
  EXPECT_EQ(buffer[3], '#');
  strncpyNULLTerminate(buffer.data(), "abc", 1);
  EXPECT_STREQ(buffer.data(), "");
}

TEST(PascalString, AsciiCopyMarksOtherBytes) {
  Buffer buffer;
  buffer.fill(0xEE);
  EXPECT_EQ(CopyPascalStringAsciiLimit(Pascal("\7\x1F ~\x7F\xA9zz"), buffer.data(), 7), 6);
  EXPECT_EQ(TextOf(buffer), "? ~??z");
  EXPECT_EQ(buffer[7], 0xEE);
  EXPECT_EQ(CopyPascalStringAsciiLimit(nullptr, buffer.data(), 7), 0);
  EXPECT_EQ(TextOf(buffer), "");
}

}  // namespace
}  // namespace quillmark
