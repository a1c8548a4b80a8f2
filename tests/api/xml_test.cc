#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST(XmlWriter, FillsTheTemplate) {
  EXPECT_EQ(Xml(ArrayOf(StoredFace())),
            kHead +
                "\t<FontData>\n\t\t<FontKind>TrueType</FontKind>\n"
                "\t\t<PostScriptName>Quill\x01</PostScriptName>\n\t\t<Foundry>--</Foundry>\n"
                "\t\t<Family>Quill <&> Sans</Family>\n\t\t<Version>1.5</Version>\n"
                "\t\t<Checksum>00000ABC</Checksum>\n\t\t<KerningChecksum>1A2B3C4D</KerningChecksum>\n"
                "\t\t<OutlineFileSize>-2</OutlineFileSize>\n\t\t<OutlineFileName>/a/b</OutlineFileName>\n"
                "\t</FontData>\n" +
                kTail);
  EXPECT_EQ(Xml(QM_FontArray(), 1), kHead + kTail);
}

TEST(XmlWriter, ReplacesPlaceholdersInEarlierValuesAndCutsValuesAt511Bytes) {
  QM_FontSpecifier face = StoredFace();
  face.family = "PLACEHOLDER_FONTKIND PLACEHOLDER_VERSION PLACEHOLDER_VERSION";
  face.postScriptName = std::string(510, 'a') + "\xC3\xA9";
  const std::string text = Xml(ArrayOf(face));
  EXPECT_THAT(text, HasSubstr("<Family>PLACEHOLDER_FONTKIND 1.5 1.5</Family>"));
  EXPECT_THAT(text, HasSubstr("<PostScriptName>" + std::string(510, 'a') + "\xC3</PostScriptName>"));
}

TEST(XmlWriter, LeavesPlaceholdersInValuesThatMultiplyOneAnother) {
  const auto repeated = [](const std::string& text, int times) {
    std::string all;
    while (times-- > 0) all += text;
    return all;
  };
  QM_FontSpecifier hostile = NamedFace(repeated("PLACEHOLDER_FAMILY", 28).c_str());
  hostile.kind = repeated("PLACEHOLDER_POSTSCRIPTNAME", 19);
  hostile.family = repeated("PLACEHOLDER_OUTLINEFILENAME", 18);
  hostile.outlineFileName = std::string(511, 'x');
  QM_FontArray array = ArrayOf(hostile);
  QM_FontSpecifier once = StoredFace();
  once.kind = "PLACEHOLDER_FAMILY";
  array.push_back(once);
  const std::string text = Xml(array);
  EXPECT_THAT(text, HasSubstr("<FontKind>" + hostile.kind.str() + "</FontKind>"));
  EXPECT_THAT(text, HasSubstr("<Family>" + hostile.family.str() + "</Family>"));
  EXPECT_THAT(text, HasSubstr("<FontKind>Quill <&> Sans</FontKind>")) << "the next face is filled as ever";
  EXPECT_LT(text.size(), 5000u);
}

TEST(XmlReader, ConvertsNumbersToSigned32Bits) {
  for (const auto& [text, hexadecimal, decimal] : {std::tuple{"7FFFFFFF", 0x7FFFFFFFu, 7u},
                                                   {"80000000", 0x7FFFFFFF, 80000000},
                                                   {"-1", 0xFFFFFFFF, 0xFFFFFFFF},
                                                   {"-99999999999", 0x80000000, 0x80000000},
                                                   {" \t+12x", 0x12, 12},
                                                   {"0x1F", 0x1F, 0},
                                                   {"", 0, 0}}) {
    const OwnedArray read = Read("<FontData><Checksum>" + std::string(text) + "</Checksum><OutlineFileSize>" +
                                 text + "</OutlineFileSize></FontData>");
    EXPECT_EQ(read->at(0).checksum, hexadecimal) << text;
    EXPECT_EQ(read->at(0).outlineFileSize, decimal) << text;
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

TEST(XmlReader, TakesLinearTimeAndEndsBeforeTheFaceWhoseSharedBytesSpendTheBudget) {
  constexpr std::size_t kFaces = 20000;
  const std::string filler(1000000, '0');
  std::string unclosed, named, own;
  for (std::size_t i = 0; i < kFaces; ++i) {
    const std::string number = std::to_string(i);
    unclosed += "<FontData><PostScriptName></FontData>";
    named += "<FontData><PostScriptName>" + number + "</PostScriptName></FontData>";
    own += "<FontData><PostScriptName>" + std::string(200, 'n') + number + "</PostScriptName><Family>" +
           std::string(200, 'f') + "</Family></FontData>";
  }
  const struct {
    const char* what;
    std::string text;
    std::size_t least, most;  // faces
  } rows[] = {
      {"each name runs to the end of the text", unclosed + filler + "</PostScriptName></FontData>", 1, 100},
      {"each block takes the value of the last",
       named + "<FontData><Family>" + filler + "</Family></FontData>", 1, 100},
      {"values of their own, however long", own + "<Family>" + filler + "</Family>", kFaces, kFaces},
      {"short and far shared values, and a long number",
       named + "<FontData><PostScriptName>" + filler + "</PostScriptName><Family>F</Family><Checksum>" +
           filler + "5</Checksum></FontData>",
       kFaces + 1, kFaces + 1},
      {"no face is complete",
       "<FontData><FontKind><Family><Version><Foundry><OutlineFileName><PostScriptName>" + filler +
           "</FontKind></Family></Version></Foundry></OutlineFileName></PostScriptName></FontData>",
       0, 0},
  };
  const auto start = std::chrono::steady_clock::now();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const OwnedArray read = Read(row.text, row.most == 0 ? 4 : 0);
    if (row.most == 0) continue;
    EXPECT_GE(read->size(), row.least);
    EXPECT_LE(read->size(), row.most);
    EXPECT_EQ(read->view(read->size() - 1).checksum, row.most == kFaces + 1 ? 5u : 0u);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
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

}  // namespace
}  // namespace quillmark
