#include "api/collection_faces.h"

#include <gtest/gtest.h>

#include "builders/collection_builder.h"
#include "builders/temp_folder.h"

namespace quillmark {
namespace {

// One name table in every face, whose only text lies in what follows it.
TEST(CollectionFaces, TextPastASharedNameTableIsThatOfTheFace) {
  const std::string table("\0\0\0\1\0\x14\0\1\0\0\0\0\0\6\0\4\0\0\0", 20);
  const auto font = [&](const std::string& next) {
    return SfntBuilder().Table("name", table).Table("next", next);
  };
  CollectionBuilder collection;
  collection.Face(font("One "))
      .Face(font("Two "))
      .Face(SfntBuilder().Table("name", table))
      .Face(font("Six "));
  const TempFolder folder;
  QM_FontArray faces;
  AppendCollectionFaces(folder.Write("a.ttc", collection.Trailer("end").Build()),
                        QM_ATTRIBUTE_POSTSCRIPT_NAME, faces);
  std::string names;
  for (std::size_t i = 0; i < faces.size(); ++i) names += faces.view(i).postScriptName.str();
  EXPECT_EQ(names, "One-Two-Six-");
}

}  // namespace
}  // namespace quillmark
