#include "api/font_array.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "api/face_builder.h"

namespace quillmark {
namespace {

// Faces are told apart by their checksum: their position in the array that was built.
std::vector<std::uint32_t> Positions(const QM_FontArray& array) {
  std::vector<std::uint32_t> positions;
  for (std::size_t i = 0; i < array.size(); ++i) positions.push_back(array.view(i).checksum);
  return positions;
}

// The rule of duplicate removal, walked as it reads.
std::vector<std::uint32_t> SlowlyKept(const QM_FontArray& array) {
  std::vector<std::uint32_t> kept;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < array.size(); ++i) {
    if (!seen.insert(array.at(i).postScriptName.str()).second) continue;
    QM_FontSpecifier best = array.at(i);
    for (std::size_t j = i + 1; j < array.size(); ++j) {
      const QM_FontSpecifier later = array.at(j);
      if (later.firstResourceID > 0 && later.postScriptName == best.postScriptName &&
          later.style < best.style) {
        best = later;
      }
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
    ASSERT_EQ(Positions(array), expected) << "round " << round;
  }
}

}  // namespace
}  // namespace quillmark
