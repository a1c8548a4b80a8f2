#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <tuple>

#include "api/face_builder.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

using ::testing::HasSubstr;

const std::string kHead =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
    "<QuillmarkData xmlns:xsi=\""
    "https://quillmark.example/Eng/FontManagement/Zephrine/spec/Quillmark/QuillmarkSchema.xsd\">\n";
const std::string kTail = "</QuillmarkData>\n";

std::string Xml(const QM_FontArray& array, std::int32_t expected_status = 0) {
  return Stored(QM_GetXMLRepresentation, array, expected_status);
}
OwnedArray Read(const std::string& text, std::int32_t expected_status = 0) {
  return ReadBack(QM_CreateSpecifierFromXML, text, expected_status);
}

QM_FontSpecifier Face() {
  QM_FontSpecifier face = NamedFace("Quill-Sans");
  face.kind = "TrueType";
  face.foundry = "unheard of";
  face.family = "Quill <&> Sans";
  face.version = "Version 1.5;x";
  face.outlineFileName = "/a/b";
  face.checksum = 0xABC;
  face.kerningChecksum = 0x1A2B3C4D;
  face.outlineFileSize = 0xFFFFFFFE;
  return face;
}

TEST(XmlWriter, FillsTheTemplate) {
  QM_FontArray array;
  array.push_back(Face());
  array.push_back(QM_FontSpecifier());  // holds nothing
  EXPECT_EQ(Xml(array),
            kHead +
                "\t<FontData>\n\t\t<FontKind>TrueType</FontKind>\n"
                "\t\t<PostScriptName>Quill-Sans</PostScriptName>\n\t\t<Foundry>--</Foundry>\n"
                "\t\t<Family>Quill <&> Sans</Family>\n\t\t<Version>1.5</Version>\n"
                "\t\t<Checksum>00000ABC</Checksum>\n\t\t<KerningChecksum>1A2B3C4D</KerningChecksum>\n"
                "\t\t<OutlineFileSize>-2</OutlineFileSize>\n\t\t<OutlineFileName>/a/b</OutlineFileName>\n"
                "\t</FontData>\n\t<FontData>\n\t\t<FontKind></FontKind>\n"
                "\t\t<PostScriptName></PostScriptName>\n\t\t<Foundry></Foundry>\n"
                "\t\t<Family></Family>\n\t\t<Version></Version>\n"
                "\t\t<Checksum>00000000</Checksum>\n\t\t<KerningChecksum>00000000</KerningChecksum>\n"
                "\t\t<OutlineFileSize>0</OutlineFileSize>\n\t\t<OutlineFileName></OutlineFileName>\n"
                "\t</FontData>\n" +
                kTail);
}

TEST(XmlWriter, ReplacesPlaceholdersInEarlierValuesAndCutsValuesAt511Bytes) {
  QM_FontSpecifier face = Face();
  face.family = "PLACEHOLDER_FONTKIND PLACEHOLDER_VERSION PLACEHOLDER_VERSION";
  face.postScriptName = std::string(510, 'a') + "\xC3\xA9";
  QM_FontArray array;
  array.push_back(face);
  EXPECT_THAT(Xml(array), HasSubstr("<Family>PLACEHOLDER_FONTKIND 1.5 1.5</Family>"));
  EXPECT_THAT(Xml(array), HasSubstr("<PostScriptName>" + std::string(510, 'a') + "\xC3</PostScriptName>"));
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
  EXPECT_EQ(Xml(QM_FontArray(), 1), kHead + kTail);
  char buffer[10];
  std::uint32_t length = sizeof(buffer);
  const QM_FontArray empty;
  EXPECT_EQ(QM_GetXMLRepresentation(&empty, buffer, &length), 4) << "a text that does not fit comes first";
}

TEST(XmlReader, ReadsBackWhatWasWritten) {
  QM_FontArray array;
  array.push_back(Face());
  const OwnedArray read = Read(Xml(array));
  ASSERT_EQ(read->size(), 1u);
  EXPECT_EQ(read->at(0).attributes, 0x703Fu);
  EXPECT_EQ(read->at(0).style | read->at(0).firstResourceID | read->at(0).fondResourceID, 0);
  EXPECT_EQ(Xml(*read), Xml(array));
}

TEST(XmlReader, ConvertsNumbersToSigned32Bits) {
  for (const auto& [text, hexadecimal, decimal] : {std::tuple{"7FFFFFFF", 0x7FFFFFFFu, 7u},
                                                   {"80000000", 0x7FFFFFFF, 80000000},
                                                   {"-1", 0xFFFFFFFF, 0xFFFFFFFF},
                                                   {"-99999999999", 0x80000000, 0x80000000},
                                                   {" \t+12x", 0x12, 12},
                                                   {"0x1F", 0x1F, 0},
                                                   {"99999999999999999999", 0x7FFFFFFF, 0x7FFFFFFF},
                                                   {"", 0, 0}}) {
    const OwnedArray read = Read("<FontData><Checksum>" + std::string(text) + "</Checksum><OutlineFileSize>" +
                                 text + "</OutlineFileSize></FontData>");
    EXPECT_EQ(read->at(0).checksum, hexadecimal) << text;
    EXPECT_EQ(read->at(0).outlineFileSize, decimal) << text;
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

TEST(XmlReader, TakesLinearTimeForBlocksThatShareTheirValues) {
  // Every value, and the end of the text, is far away from most of the blocks: 100000 without a name, and
  // 20000 with one.
  const std::string zeros(1000000, '0');
  std::string unnamed;
  for (int i = 0; i < 100000; ++i) unnamed += "<FontData></FontData>";
  std::string named;
  for (int i = 0; i < 20000; ++i) {
    named += "<FontData><PostScriptName>" + std::to_string(i) + "</PostScriptName></FontData>";
  }
  const std::string last = "<FontData><PostScriptName>" + zeros +
                           "</PostScriptName><Family>F</Family><Checksum>" + zeros +
                           "5</Checksum></FontData>";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Read(unnamed + last)->size(), 1u);
  const OwnedArray read = Read(named + last);
  ASSERT_EQ(read->size(), 20001u);
  EXPECT_EQ(read->view(0).family.str(), "F");
  EXPECT_EQ(read->view(19999).checksum, 5u);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace quillmark
