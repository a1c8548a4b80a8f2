#include <gtest/gtest.h>

#include <string>

#include "api/face_builder.h"
#include "platform/core_foundation/cf_object.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

const std::string kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

std::string PropertyList(const QM_FontArray& array, std::int32_t expected_status = 0) {
  return Stored(QM_GetPropertyListRepresentation, array, expected_status);
}
OwnedArray Read(const std::string& text, std::int32_t expected_status = 0) {
  return ReadBack(QM_CreateSpecifierFromPropertyList, text, expected_status);
}

// Counts platform objects around each test.
struct PropertyListForm : ::testing::Test {
  ~PropertyListForm() override { EXPECT_EQ(cf::Object::LiveCount(), live_before_); }
  const std::int64_t live_before_ = cf::Object::LiveCount();
};

TEST_F(PropertyListForm, WritesElevenStringsAFace) {
  QM_FontSpecifier face;
  face.kind = "TrueType";
  face.family = "Quill <&> Sans";
  face.postScriptName = "Quill\x01";
  face.version = "Version 1.5;x";
  face.outlineFileName = "/a/b";
  face.kerningChecksum = 0x1234;
  face.checksum = 0xFFFFFFFF;
  face.outlineFileSize = 0xFFFFFFFE;
  face.attributes = QM_ATTRIBUTES_ALL & ~std::uint32_t{QM_ATTRIBUTE_CHECKSUM | QM_ATTRIBUTE_FOUNDRY};
  const std::string text = PropertyList(ArrayOf(face));
  const auto entry = [](const std::string& key, const std::string& value) {
    return "\t\t<key>" + key + "</key>\n\t\t<string>" + value + "</string>\n";
  };
  EXPECT_EQ(text, kHead + "<array>\n\t<dict>\n" + entry("Checksum", "00001234") +
                      entry("Family", "Quill &lt;&amp;&gt; Sans") + entry("FontKind", "TrueType") +
                      entry("Foundry", "") + entry("KerningChecksum", "00001234") + entry("Keywords", "") +
                      entry("OutlineFileName", "/a/b") + entry("OutlineFileSize", "-2") + entry("Path", "") +
                      entry("PostScriptName", "Quill\x01") + entry("Version", "1.5") +
                      "\t</dict>\n</array>\n</plist>\n");
  const OwnedArray read = Read(text);
  EXPECT_EQ(read->at(0).attributes, 0x703Fu) << "what was absent is held now, empty";
  EXPECT_EQ(read->at(0).kerningChecksum, 0x1234u);
  EXPECT_EQ(read->at(0).outlineFileSize, 0xFFFFFFFEu);
}

TEST_F(PropertyListForm, WritesTheLongestValidBeginning) {
  const std::pair<std::string, std::string> rows[] = {
      {"Quill\xFF Sans", "Quill"},
      {std::string(510, 'a') + "\xC3\xA9", std::string(510, 'a')},  // cut inside the character
  };
  for (const auto& [name, expected] : rows) {
    EXPECT_EQ(Read(PropertyList(ArrayOf(NamedFace(name.c_str()))))->at(0).postScriptName.str(), expected);
  }
}

TEST_F(PropertyListForm, ReadsStringsOnly) {
  const struct {
    const char* what;
    const char* element;
    std::uint32_t attributes;
  } rows[] = {
      {"one key", "<dict><key>PostScriptName</key><string>A</string></dict>", 0x1},
      {"a number", "<dict><key>Checksum</key><integer>5</integer></dict>", 0},
      {"no dictionary", "<string>PostScriptName</string>", 0},
  };
  for (const auto& row : rows) {
    const OwnedArray read = Read("<array>" + std::string(row.element) + "</array>");
    ASSERT_EQ(read->size(), 1u) << row.what;
    EXPECT_EQ(read->at(0).attributes, row.attributes) << row.what;
  }
  EXPECT_EQ(Read("<array><dict><key>Checksum</key><string>FFFFFFFF</string></dict></array>")->at(0).checksum,
            0x7FFFFFFFu);
}

TEST_F(PropertyListForm, WritesNoFaceAndRefusesWhatHoldsNone) {
  EXPECT_EQ(PropertyList(QM_FontArray(), 1), kHead + "<array/>\n</plist>\n");
  for (const char* text : {"", "x", "<array/>", "<dict><key>Family</key><string>F</string></dict>",
                           "<string>s</string>", "<array><dict></array>"}) {
    Read(text, 1);
  }
}

}  // namespace
}  // namespace quillmark
