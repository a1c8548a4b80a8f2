#include "api/font_array.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <stdexcept>

#include "api/duplicate_filter.h"
#include "api/face_builder.h"

namespace quillmark {
namespace {

// Faces are told apart by their checksum: their position in the array that was built.
QM_FontArray MakeArray(std::vector<QM_FontSpecifier> faces) {
  QM_FontArray array;
  for (std::uint32_t i = 0; i < faces.size(); ++i) {
    faces[i].checksum = i;
    array.push_back(faces[i]);
  }
  return array;
}
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

TEST(FontArray, GivesCopiesAndThrowsPastTheEnd) {
  QM_FontArray array = MakeArray({NamedFace("A")});
  array.at(0).postScriptName = "B";
  EXPECT_EQ(array.at(0).postScriptName.str(), "A");
  EXPECT_THROW(array.at(1), std::out_of_range);
  EXPECT_THROW(array.view(1), std::out_of_range);
}

TEST(FontArray, KeepsOneFaceOfEachName) {
  const struct {
    std::vector<QM_FontSpecifier> faces;
    std::vector<std::uint32_t> kept;
  } rows[] = {
      // The first of the lowest style.
      {{NamedFace("A-Bold", 1, 128), NamedFace("A-Bold", 0, 129), NamedFace("A-Bold", 0, 130)}, {1}},
      // A resource ID of 0 is none, and style -1 is below every other.
      {{NamedFace("X"), NamedFace("Y", 3), NamedFace("X", -2, 0), NamedFace("Y", 3, 7), NamedFace("Y")},
       {0, 1}},
      // Names that differ in case alone share candidates.
      {{NamedFace("A", 2, 1), NamedFace("a", 2, 1), NamedFace("A", 1, 1)}, {2, 2}},
  };
  for (const auto& row : rows) {
    QM_FontArray array = MakeArray(row.faces);
    array.RemoveDups();
    EXPECT_EQ(Positions(array), row.kept);
  }
}

TEST(FontArray, RemovesWhatTheRuleRemoves) {
  std::mt19937 random(1);
  const char* const names[] = {"", "A", "a", "AB", "aB", "ab", "C"};
  for (int round = 0; round < 5000; ++round) {
    std::vector<QM_FontSpecifier> faces(random() % 9);
    for (QM_FontSpecifier& face : faces) {
      face = NamedFace(names[random() % 7], static_cast<int>(random() % 4) - 1,
                       static_cast<int>(random() % 4) - 1);
    }
    QM_FontArray array = MakeArray(faces);
    const auto expected = SlowlyKept(array);
    DuplicateFilter filter;
    QM_FontArray filtered;
    for (std::size_t i = 0; i < array.size(); ++i) {
      if (filter.MayStay(array.view(i))) filtered.push_back(array.at(i));
    }
    array.RemoveDups();
    filtered.RemoveDups();
    ASSERT_EQ(Positions(array), expected) << "round " << round;
    ASSERT_EQ(Positions(filtered), expected) << "round " << round;
  }
}

TEST(FontArray, FindsTheFirstFaceOfAFondAndStyle) {
  std::uint32_t index = 77;
  EXPECT_FALSE(QM_FontArray().FindIndexForFondResourceID(128, 0, index));
  QM_FontArray array;
  for (const auto& [fond, style] : {std::pair{128, 0}, {129, 1}, {-3, 1}, {129, 1}}) {
    QM_FontSpecifier face = NamedFace("", style);
    face.fondResourceID = fond;
    array.push_back(face);
  }
  EXPECT_FALSE(array.FindIndexForFondResourceID(129, 0, index));
  EXPECT_EQ(index, 77u) << "untouched without a find";
  EXPECT_TRUE(array.FindIndexForFondResourceID(129, 1, index));
  EXPECT_EQ(index, 1u);
}

}  // namespace
}  // namespace quillmark
