#include "api/collection_faces.h"

#include <gtest/gtest.h>

#include "builders/collection_builder.h"
#include "builders/temp_folder.h"

namespace quillmark {
namespace {

std::vector<std::string> Names(const std::vector<SfntBuilder>& fonts, std::uint32_t request) {
  CollectionBuilder collection;
  for (const SfntBuilder& font : fonts) collection.Face(font);
  const TempFolder folder;
  QM_FontArray faces;
  AppendCollectionFaces(folder.Write("a.ttc", collection.Trailer("end").Build()), request, faces);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < faces.size(); ++i) names.push_back(faces.view(i).postScriptName.str());
  return names;
}

TEST(CollectionFaces, OfAPostScriptNameTheFirstIsAppended) {
  const std::vector<SfntBuilder> fonts = {SfntBuilder().MacName(6, "A"), SfntBuilder().MacName(6, "B"),
                                          SfntBuilder().MacName(6, "A").Table("glyf", "1234"),
                                          SfntBuilder().MacName(6, "a")};
  EXPECT_EQ(Names(fonts, QM_ATTRIBUTE_POSTSCRIPT_NAME), (std::vector<std::string>{"A", "B", "a"}));
  EXPECT_EQ(Names(fonts, QM_ATTRIBUTE_FAMILY), std::vector<std::string>{""});
}

// One name table in every face, whose only text lies in what follows it.
TEST(CollectionFaces, TextPastASharedNameTableIsThatOfTheFace) {
  const std::string table("\0\0\0\1\0\x14\0\1\0\0\0\0\0\6\0\4\0\0\0", 20);
  const auto font = [&](const std::string& next) {
    return SfntBuilder().Table("name", table).Table("next", next);
  };
  EXPECT_EQ(Names({font("One "), font("Two "), SfntBuilder().Table("name", table), font("Six ")},
                  QM_ATTRIBUTE_POSTSCRIPT_NAME),
            (std::vector<std::string>{"One-", "Two-", "Six-"}));
}

}  // namespace
}  // namespace quillmark
