// The samples are what they are meant to be: else nothing that is done to them would prove anything.
#include "hostile/sample_files.h"

#include <gtest/gtest.h>

#include <map>

#include "api/face_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

TEST(SampleFiles, HoldWhatTheirKindsHold) {
  const std::map<std::string, std::string> expected = {
      {"truetype", "OpenType - TT Quill, "},
      {"opentype", "OpenType - PS QuillPS, "},
      {"collection",
       "TrueType Collection QuillOne, TrueType Collection QuillTwo, TrueType Collection QuillThree, "},
      {"dfont", "TrueType Quill, TrueType QuillBold, PostScript Quill-Italic, "},
      {"appledouble", "TrueType Quill, TrueType QuillBold, PostScript Quill-Italic, "},
      {"attribute", "PostScript Quill, PostScript Quill-Bold, PostScript Quill-Italic, "},
      {"suitcase", "PostScript Quill [outlines], "},
      {"post", ""}};
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    const TempFolder folder;
    if (!WriteSample(folder.path(), sample)) continue;  // no extended attributes
    const OwnedArray array = Create(folder.Path(sample.font));
    std::string faces;
    for (std::size_t i = 0; array && i < array->size(); ++i) {
      const QM_FontSpecifier& face = array->view(i);
      faces += face.kind.str() + " " + face.postScriptName.str();
      if (!face.outlineFileName.empty() && face.outlineFileSize > 0) faces += " [outlines]";
      faces += ", ";
    }
    EXPECT_EQ(faces, expected.at(sample.kind)) << sample.kind;
  }
}

}  // namespace
}  // namespace quillmark
