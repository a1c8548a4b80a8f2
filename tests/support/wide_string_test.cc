#include "support/wide_string.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(WideString, HoldsUnitByUnit) {
  EXPECT_EQ(UTF8ToWide("\u00E9\U0001D11E"), (std::wstring{0xE9, 0xD834, 0xDD1E}));
  EXPECT_EQ(UTF8ToWide("\xC3"), L"");
  const UniChar units[] = {0x41, 0xD834, 0, 0x42};
  EXPECT_EQ(UniCharBufToWide(units), (std::wstring{0x41, 0xD834}));

  EXPECT_EQ(WideToUTF8({0xE9, 0xD834, 0xDD1E}).str(), "\u00E9\U0001D11E");
  std::string out;
  EXPECT_EQ(WideToUTF8({0x10041}, &out), 1u) << "each character is cut to one unit";
  EXPECT_EQ(WideToUTF8({0x42, 0xD834}, &out), 0u);
  EXPECT_EQ(out, "A") << "a lone surrogate leaves it untouched";
}

}  // namespace
}  // namespace quillmark
