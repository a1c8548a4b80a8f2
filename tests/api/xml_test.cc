#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "api/face_builder.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

const std::string kHead =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
    "<QuillmarkData xmlns:xsi=\""
    "https://quillmark.example/Eng/FontManagement/Zephrine/spec/Quillmark/QuillmarkSchema.xsd\">\n";
const std::string kTail = "</QuillmarkData>\n";

std::string Xml(const QM_FontArray& array, std::int32_t expected_status = 0) {
  std::uint32_t length = 0;
  char none;
  QM_GetXMLRepresentation(&array, &none, &length);
  std::string text(length, '?');
  EXPECT_EQ(QM_GetXMLRepresentation(&array, text.data(), &length), expected_status);
  EXPECT_EQ(length, text.size());
  text.pop_back();
  return text;
}

OwnedArray Read(const std::string& text, std::int32_t expected_status = 0) {
  QM_FontArray* array = nullptr;
  EXPECT_EQ(QM_CreateSpecifierFromXML(text.c_str(), &array), expected_status);
  EXPECT_EQ(array != nullptr, expected_status == 0);
  return OwnedArray(array);
}

QM_FontSpecifier Face() {
  QM_FontSpecifier face;
  face.kind = "TrueType";
  face.postScriptName = "Quill-Sans";
  face.foundry = "unheard of";
  face.family = "Quill <&> Sans";
  face.version = "Version 1.5;x";
  face.outlineFileName = "/a/b";
  face.checksum = 0xABC;
  face.kerningChecksum = 0x1A2B3C4D;
  face.outlineFileSize = 0xFFFFFFFE;
  face.attributes = QM_ATTRIBUTES_ALL;
  return face;
}

TEST(XmlWriter, FillsTheTemplate) {
  QM_FontArray array;
  array.push_back(Face());
  array.push_back(QM_FontSpecifier());  // holds nothing
  EXPECT_EQ(Xml(array), kHead +
                            "\t<FontData>\n"
                            "\t\t<FontKind>TrueType</FontKind>\n"
                            "\t\t<PostScriptName>Quill-Sans</PostScriptName>\n"
                            "\t\t<Foundry>--</Foundry>\n"
                            "\t\t<Family>Quill <&> Sans</Family>\n"
                            "\t\t<Version>1.5</Version>\n"
                            "\t\t<Checksum>00000ABC</Checksum>\n"
                            "\t\t<KerningChecksum>1A2B3C4D</KerningChecksum>\n"
                            "\t\t<OutlineFileSize>-2</OutlineFileSize>\n"
                            "\t\t<OutlineFileName>/a/b</OutlineFileName>\n"
                            "\t</FontData>\n"
                            "\t<FontData>\n"
                            "\t\t<FontKind></FontKind>\n"
                            "\t\t<PostScriptName></PostScriptName>\n"
                            "\t\t<Foundry></Foundry>\n"
                            "\t\t<Family></Family>\n"
                            "\t\t<Version></Version>\n"
                            "\t\t<Checksum>00000000</Checksum>\n"
                            "\t\t<KerningChecksum>00000000</KerningChecksum>\n"
                            "\t\t<OutlineFileSize>0</OutlineFileSize>\n"
                            "\t\t<OutlineFileName></OutlineFileName>\n"
                            "\t</FontData>\n" +
                            kTail);
}

TEST(XmlWriter, ReplacesPlaceholdersInEarlierValuesOnly) {
  QM_FontArray array;
  QM_FontSpecifier face = Face();
  face.family = "PLACEHOLDER_FONTKIND PLACEHOLDER_VERSION PLACEHOLDER_VERSION";
  array.push_back(face);
  EXPECT_NE(Xml(array).find("<Family>PLACEHOLDER_FONTKIND 1.5 1.5</Family>"), std::string::npos);
}

TEST(XmlWriter, CutsValuesAt511Bytes) {
  QM_FontArray array;
  QM_FontSpecifier face = Face();
  face.postScriptName = std::string(510, 'a') + "\xC3\xA9";
  array.push_back(face);
  EXPECT_NE(Xml(array).find("<PostScriptName>" + std::string(510, 'a') + "\xC3</PostScriptName>"),
            std::string::npos);
}

TEST(XmlWriter, CopiesWhatFits) {
  QM_FontArray array;
  array.push_back(Face());
  const std::string text = Xml(array);
  const auto size = static_cast<std::uint32_t>(text.size());
  for (const std::uint32_t room : {0u, 1u, 2u, size / 2, size, size + 1, size + 2}) {
    std::string buffer(room + 1, '?');
    std::uint32_t length = room;
    EXPECT_EQ(QM_GetXMLRepresentation(&array, buffer.data(), &length), room > size ? 0 : 4) << room;
    EXPECT_EQ(length, size + 1) << room;
    const std::size_t copied = std::min(size, room - (room > 0));
    EXPECT_EQ(buffer.substr(0, copied), text.substr(0, copied)) << room;
    EXPECT_EQ(buffer[copied], room > 0 ? '\0' : '?') << room;
    EXPECT_EQ(buffer.back(), '?') << room;
  }
}

TEST(XmlWriter, WritesAnEmptyArrayAndFails) {
  EXPECT_EQ(Xml(QM_FontArray(), 1), kHead + kTail);
  char buffer[10];
  std::uint32_t length = sizeof(buffer);
  const QM_FontArray empty;
  EXPECT_EQ(QM_GetXMLRepresentation(&empty, buffer, &length), 4) << "a text that does not fit comes first";
}

TEST(XmlReader, ReadsBackWhatWasWritten) {
  QM_FontArray array;
  array.push_back(Face());
  const std::string text = Xml(array);
  const OwnedArray read = Read(text);
  ASSERT_EQ(read->size(), 1u);
  const QM_FontSpecifier face = read->at(0);
  EXPECT_EQ(face.attributes, 0x703Fu);
  EXPECT_EQ(face.family.str(), "Quill <&> Sans");
  EXPECT_EQ(face.version.str(), "1.5");
  EXPECT_EQ(face.kerningChecksum, 0x1A2B3C4Du);
  EXPECT_EQ(face.outlineFileSize, 0xFFFFFFFEu);
  EXPECT_EQ(face.style | face.firstResourceID | face.fondResourceID, 0);
  EXPECT_EQ(Xml(*read), text);
}

TEST(XmlReader, ConvertsNumbersToSigned32Bits) {
  const struct {
    const char* text;
    std::uint32_t hexadecimal, decimal;
  } rows[] = {
      {"7FFFFFFF", 0x7FFFFFFF, 7},
      {"80000000", 0x7FFFFFFF, 80000000},
      {"FFFFFFFF", 0x7FFFFFFF, 0},
      {"-1", 0xFFFFFFFF, 0xFFFFFFFF},
      {"-99999999999", 0x80000000, 0x80000000},
      {" \t+12x", 0x12, 12},
      {"0x1F", 0x1F, 0},
      {"99999999999999999999", 0x7FFFFFFF, 0x7FFFFFFF},
      {"", 0, 0},
  };
  for (const auto& row : rows) {
    const std::string text = row.text;
    const OwnedArray read = Read("<FontData><Checksum>" + text + "</Checksum><OutlineFileSize>" + text +
                                 "</OutlineFileSize></FontData>");
    EXPECT_EQ(read->at(0).checksum, row.hexadecimal) << text;
    EXPECT_EQ(read->at(0).outlineFileSize, row.decimal) << text;
    EXPECT_EQ(read->at(0).attributes, 0x4020u) << text;
  }
}

TEST(XmlReader, TakesTagsFromBeyondTheBlock) {
  const OwnedArray read = Read(
      "<Family>before</Family><FontData><PostScriptName>A</PostScriptName><Family>  </FontData>"
      "<FontData><PostScriptName>B</PostScriptName><Version>2</Version></Family></FontData>"
      "<FontData><PostScriptName>C</PostScriptName><Family></Family></FontData>");
  ASSERT_EQ(read->size(), 3u);
  EXPECT_EQ(read->at(0).family.str(),
            "  </FontData><FontData><PostScriptName>B</PostScriptName><Version>2</Version>");
  EXPECT_EQ(read->at(0).version.str(), "2");
  EXPECT_EQ(read->at(1).family.str(), "");
  EXPECT_EQ(read->at(1).attributes, 0x1009u);
  EXPECT_EQ(read->at(2).attributes, 0x1001u) << "an empty value counts, an earlier one does not";
}

TEST(XmlReader, CountsWholeBlocksAndKeepsACutOne) {
  const std::string a = "<FontData><PostScriptName>A</PostScriptName>";
  const std::string b = "<FontData><PostScriptName>B</PostScriptName>";
  const std::string end = "</FontData>";
  Read("", 4);
  Read(end, 4);
  Read(a, 4);
  EXPECT_EQ(Read(a + end + b)->size(), 2u);
  EXPECT_EQ(Read(a + b + end)->size(), 1u) << "the second opening lies before the end of the first";
  EXPECT_EQ(Read(a + end + b + end + a + end)->size(), 2u);
}

TEST(XmlReader, TakesLinearTimeForBlocksWithoutTags) {
  // Every value, and the end of the text, is far away from most of the blocks.
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "<FontData></FontData>";
  const std::string last = "<FontData><PostScriptName>" + std::string(1000000, 'n') +
                           "</PostScriptName><Family>F</Family><Checksum>" + std::string(1000000, '0') +
                           "5</Checksum></FontData>";
  const auto start = std::chrono::steady_clock::now();
  const OwnedArray read = Read(text + last);
  ASSERT_EQ(read->size(), 1u);
  EXPECT_EQ(read->at(0).family.str(), "F");
  EXPECT_EQ(read->at(0).checksum, 5u);
  std::string named;
  for (int i = 0; i < 100000; ++i) {
    named += "<FontData><PostScriptName>" + std::to_string(i) + "</PostScriptName></FontData>";
  }
  EXPECT_EQ(Read(named)->size(), 100000u);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace quillmark
