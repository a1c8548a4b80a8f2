#include "analysis/name_content.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace quillmark {
namespace {

constexpr NameContent kNone = NameContent::kNone, kAscii = NameContent::kAscii, kOther = NameContent::kOther;

TEST(NameContentMemory, OnePlaceHoldsWhatItsEncodingAndLengthSay) {
  static constexpr std::string_view kFile("\0A\0B\x83\x41\xD8\0\0\0", 10);
  constexpr NameRecord kUtf16{3, 1, 0x409, 6, false, {}};
  constexpr NameRecord kShiftJis{1, 0, 0, 6, true, {}};
  constexpr NameRecord kSingleByte{1, 0, 0, 6, false, {}};
  const struct {
    NameRecord record;
    std::size_t start, length;
    NameContent expected;
  } rows[] = {
      {kUtf16, 0, 4, kAscii},      {kUtf16, 0, 6, kOther},      {kUtf16, 0, 8, kNone},  // a lone surrogate
      {kUtf16, 0, 1, kNone},       {kUtf16, 8, 2, kNone},       {kUtf16, 0, 0, kNone},
      {kUtf16, 1, 2, kOther},      {kShiftJis, 1, 2, kAscii},   {kShiftJis, 0, 4, kNone},
      {kShiftJis, 4, 2, kOther},   {kShiftJis, 4, 1, kNone},    {kShiftJis, 5, 1, kAscii},
      {kSingleByte, 4, 2, kAscii}, {kSingleByte, 4, 1, kAscii}, {kSingleByte, 0, 2, kNone},
  };
  NameContentMemory memory(AsBytes(kFile));
  for (int round = 0; round < 2; ++round) {
    for (const auto& row : rows) {
      NameRecord record = row.record;
      record.text = AsBytes(kFile.substr(row.start, row.length));
      EXPECT_EQ(memory.ContentOf(record), row.expected)
          << record.platform_id << " " << row.start << " " << row.length;
    }
  }
}

TEST(NameContentMemory, BytesOutsideTheFileAreReadAgain) {
  constexpr std::string_view kFile = "file";
  NameContentMemory memory(AsBytes(kFile));
  std::array<std::uint8_t, 2> bytes = {0, 'A'};
  const NameRecord record{3, 1, 0x409, 6, false, bytes};
  EXPECT_EQ(memory.ContentOf(record), kAscii);
  bytes = {1, 'A'};
  EXPECT_EQ(memory.ContentOf(record), kOther);
}

}  // namespace
}  // namespace quillmark
