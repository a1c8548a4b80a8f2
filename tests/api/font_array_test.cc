#include "api/font_array.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "api/face_builder.h"

namespace quillmark {
namespace {

// The rule of duplicate removal, walked as it reads. Faces are told apart by their checksum.
std::vector<std::uint32_t> SlowlyKept(const QM_FontArray& array) {
  std::vector<std::uint32_t> kept;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < array.size(); ++i) {
    QM_FontSpecifier best = array.at(i);
    if (!seen.insert(best.postScriptName.str()).second) continue;
    for (std::size_t j = i + 1; j < array.size(); ++j) {
      const QM_FontSpecifier& later = array.view(j);
      const bool is_better = later.firstResourceID > 0 && later.style < best.style;
      if (is_better && later.postScriptName == best.postScriptName) best = later;
    }
    kept.push_back(best.checksum);
  }
  return kept;
}

TEST(FontArray, RemovesWhatTheRuleRemoves) {
  std::mt19937 random(1);
  const char* const names[] = {"", "A", "a", "AB", "aB", "ab", "C"};
  for (int round = 0; round < 10000; ++round) {
    QM_FontArray array;
    for (std::uint32_t i = 0; i < 11 && random() % 12 != 0; ++i) {
      QM_FontSpecifier face = NamedFace(names[random() % 7], static_cast<int>(random() % 4) - 1,
                                        static_cast<int>(random() % 4) - 1);
      face.checksum = i;
      array.push_back(face);
    }
    const auto expected = SlowlyKept(array);
    array.RemoveDups();
    std::vector<std::uint32_t> kept;
    for (std::size_t i = 0; i < array.size(); ++i) kept.push_back(array.view(i).checksum);
    ASSERT_EQ(kept, expected) << "round " << round;
  }
}

}  // namespace
}  // namespace quillmark
