#include <gtest/gtest.h>

#include <string>
#include <tuple>

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
  QM_FontSpecifier face = StoredFace();
  face.attributes &= ~std::uint32_t{QM_ATTRIBUTE_CHECKSUM | QM_ATTRIBUTE_FOUNDRY};
  const std::string text = PropertyList(ArrayOf(face));
  const auto entry = [](const std::string& key, const std::string& value) {
    return "\t\t<key>" + key + "</key>\n\t\t<string>" + value + "</string>\n";
  };
  EXPECT_EQ(text, kHead + "<array>\n\t<dict>\n" + entry("Checksum", "1A2B3C4D") +
                      entry("Family", "Quill &lt;&amp;&gt; Sans") + entry("FontKind", "TrueType") +
                      entry("Foundry", "") + entry("KerningChecksum", "1A2B3C4D") + entry("Keywords", "") +
                      entry("OutlineFileName", "/a/b") + entry("OutlineFileSize", "-2") + entry("Path", "") +
                      entry("PostScriptName", "Quill\x01") + entry("Version", "1.5") +
                      "\t</dict>\n</array>\n</plist>\n");
  const OwnedArray read = Read(text);
  EXPECT_EQ(read->at(0).attributes, 0x703Fu) << "what was absent is held, empty";
  EXPECT_EQ(read->at(0).kerningChecksum, 0x1A2B3C4Du);
  EXPECT_EQ(read->at(0).outlineFileSize, 0xFFFFFFFEu);
}

TEST_F(PropertyListForm, WritesTheLongestValidBeginning) {
  const std::string cut(510, 'a');  // inside the character that follows
  for (const auto& [name, expected] : {std::pair<std::string, std::string>("Quill\xFF Sans", "Quill"),
                                       {"\xEF\xBB\xBFQuill", "Quill"},
                                       {cut + "\xC3\xA9", cut}}) {
    EXPECT_EQ(Read(PropertyList(ArrayOf(NamedFace(name.c_str()))))->at(0).postScriptName.str(), expected);
  }
}

TEST_F(PropertyListForm, ReadsStringsOnly) {
  for (const auto& [element, attributes, checksum] :
       {std::tuple("<dict><key>PostScriptName</key><string>A</string></dict>", 0x1u, 0u),
        {"<dict><key>Checksum</key><string>FFFFFFFF</string></dict>", 0x4000u, 0x7FFFFFFFu},
        {"<dict><key>Checksum</key><integer>5</integer></dict>", 0u, 0u},
        {"<string>PostScriptName</string>", 0u, 0u}}) {
    const OwnedArray read = Read("<array>" + std::string(element) + "</array>");
    ASSERT_EQ(read->size(), 1u) << element;
    EXPECT_EQ(read->at(0).attributes, attributes) << element;
    EXPECT_EQ(read->at(0).checksum, checksum) << element;
  }
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
