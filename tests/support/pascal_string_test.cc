#include "support/pascal_string.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quillmark {
namespace {

const unsigned char* Pascal(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

struct PascalString : testing::Test {
  std::string Text() const { return {buffer_.begin() + 1, buffer_.begin() + 1 + buffer_[0]}; }
  void SetUp() override { buffer_.fill(0xEE); }
  std::array<unsigned char, 32> buffer_;
};

TEST_F(PascalString, CopiesWhatTheLimitLeavesRoomFor) {
  EXPECT_EQ(CopyPascalString(Pascal("\x14ghijghijghijghijghij"), buffer_.data(), 10), 9);
  EXPECT_EQ(Text(), "ghijghijg");
  EXPECT_EQ(buffer_[10], 0xEE);
  EXPECT_EQ(CopyPascalStringAsciiLimit(Pascal("\7\x1F ~\x7F\xA9zz"), buffer_.data(), 7), 6);
  EXPECT_EQ(Text(), "? ~??z") << "other bytes than ASCII are marked";
  EXPECT_EQ(buffer_[7], 'i');
  EXPECT_EQ(CopyPascalStringAsciiLimit(nullptr, buffer_.data(), 32), 0);
  EXPECT_EQ(Text(), "");
}

TEST_F(PascalString, AppendsUpToTheLimit) {
  EXPECT_EQ(CopyPascalString(Pascal("\3abc"), buffer_.data(), 32), 3);
  AppendPascalString(buffer_.data(), Pascal("\3def"), 7);
  EXPECT_EQ(Text(), "abcdef") << "an exact fit";
  AppendPascalString(buffer_.data(), Pascal("\3ghi"), 9);
  EXPECT_EQ(Text(), "abcdefgh");
  EXPECT_EQ(buffer_[9], 0xEE);
}

}  // namespace
}  // namespace quillmark
