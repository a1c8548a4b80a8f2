// Both stored forms, written from faces made by hand and read back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <tuple>
#include <utility>

#include "api/face_builder.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

using ::testing::HasSubstr;

struct StoredForm {
  FormWriter write;
  std::int32_t (*read)(const char*, QM_FontArray**);

  std::string Written(const QM_FontArray& array, std::int32_t expected_status = 0) const {
    std::int32_t status = -1;
    std::string text = Stored(write, &array, &status);
    EXPECT_EQ(status, expected_status);
    return text;
  }
  // Faces of a stored form have no place in a resource file.
  OwnedArray Read(const std::string& text, std::int32_t expected_status = 0) const {
    QM_FontArray* array = nullptr;
    EXPECT_EQ(read(text.c_str(), &array), expected_status) << text.substr(0, 80);
    EXPECT_EQ(array != nullptr, expected_status == 0);
    for (std::size_t i = 0; array != nullptr && i < array->size(); ++i) {
      const QM_FontSpecifier& face = array->view(i);
      EXPECT_EQ(face.style | face.firstResourceID | face.fondResourceID, 0);
    }
    return OwnedArray(array);
  }
};
constexpr StoredForm kXml = {QM_GetXMLRepresentation, QM_CreateSpecifierFromXML};
constexpr StoredForm kList = {QM_GetPropertyListRepresentation, QM_CreateSpecifierFromPropertyList};

const std::string kXmlHead =
    "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
    "<QuillmarkData xmlns:xsi=\""
    "https://quillmark.example/Eng/FontManagement/Zephrine/spec/Quillmark/QuillmarkSchema.xsd\">\n";
const std::string kXmlTail = "</QuillmarkData>\n";

TEST(XmlWriter, FillsTheTemplate) {
  EXPECT_EQ(kXml.Written(ArrayOf(StoredFace())),
            kXmlHead +
                "\t<FontData>\n\t\t<FontKind>TrueType</FontKind>\n"
                "\t\t<PostScriptName>Quill\x01</PostScriptName>\n\t\t<Foundry>--</Foundry>\n"
                "\t\t<Family>Quill <&> Sans</Family>\n\t\t<Version>1.5</Version>\n"
                "\t\t<Checksum>00000ABC</Checksum>\n\t\t<KerningChecksum>1A2B3C4D</KerningChecksum>\n"
                "\t\t<OutlineFileSize>-2</OutlineFileSize>\n\t\t<OutlineFileName>/a/b</OutlineFileName>\n"
                "\t</FontData>\n" +
                kXmlTail);
  EXPECT_EQ(kXml.Written(QM_FontArray(), 1), kXmlHead + kXmlTail);
}

TEST(XmlWriter, ReplacesPlaceholdersInEarlierValuesUnlessTheyMultiplyOneAnother) {
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
  QM_FontSpecifier next = StoredFace();
  next.family = "PLACEHOLDER_FONTKIND PLACEHOLDER_VERSION PLACEHOLDER_VERSION";
  next.postScriptName = std::string(510, 'a') + "\xC3\xA9";  // cut at 511 bytes
  array.push_back(next);
  const std::string text = kXml.Written(array);
  EXPECT_THAT(text, HasSubstr("<FontKind>" + hostile.kind.str() + "</FontKind>"));
  EXPECT_THAT(text, HasSubstr("<Family>" + hostile.family.str() + "</Family>"));
  EXPECT_THAT(text, HasSubstr("<Family>PLACEHOLDER_FONTKIND 1.5 1.5</Family>"));
  EXPECT_THAT(text, HasSubstr("<PostScriptName>" + std::string(510, 'a') + "\xC3</PostScriptName>"));
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
    const OwnedArray read =
        kXml.Read("<FontData><Checksum>" + std::string(text) + "</Checksum><OutlineFileSize>" + text +
                  "</OutlineFileSize></FontData>");
    EXPECT_EQ(read->at(0).checksum, hexadecimal) << text;
    EXPECT_EQ(read->at(0).outlineFileSize, decimal) << text;
  }
}

TEST(XmlReader, TakesTagsFromBeyondTheBlock) {
  const OwnedArray read = kXml.Read(
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
  // Texts, the least and the most faces that are read of them, and the checksum of the last one.
  const std::tuple<std::string, std::size_t, std::size_t, std::uint32_t> rows[] = {
      {unclosed + filler + "</PostScriptName></FontData>", 1, 100, 0},
      {named + "<FontData><Family>" + filler + "</Family></FontData>", 1, 100, 0},
      // Long values that no other face has, and short or far shared ones, do not end it.
      {own + "<Family>" + filler + "</Family>", kFaces, kFaces, 0},
      {named + "<FontData><PostScriptName>" + filler + "</PostScriptName><Family>F</Family><Checksum>" +
           filler + "5</Checksum></FontData>",
       kFaces + 1, kFaces + 1, 5}};
  const auto start = std::chrono::steady_clock::now();
  for (const auto& [text, least, most, checksum] : rows) {
    SCOPED_TRACE(text.substr(0, 100));
    const OwnedArray read = kXml.Read(text);
    EXPECT_GE(read->size(), least);
    EXPECT_LE(read->size(), most);
    EXPECT_EQ(read->view(read->size() - 1).checksum, checksum);
  }
  kXml.Read("<FontData><FontKind><Family><Version><Foundry><OutlineFileName><PostScriptName>" + filler +
                "</FontKind></Family></Version></Foundry></OutlineFileName></PostScriptName></FontData>",
            4);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(XmlReader, CountsWholeBlocksAndKeepsACutOne) {
  const std::string a = "<FontData><PostScriptName>A</PostScriptName>";
  const std::string b = "<FontData><PostScriptName>B</PostScriptName>";
  const std::string end = "</FontData>";
  for (const std::string& text : {std::string(), end, a}) kXml.Read(text, 4);
  EXPECT_EQ(kXml.Read(a + end + b)->size(), 2u);
  EXPECT_EQ(kXml.Read(a + b + end)->size(), 1u) << "the second opening lies before the end of the first";
  EXPECT_EQ(kXml.Read(a + end + b + end + a + end)->size(), 2u);
}

const std::string kListHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

TEST(PropertyListForm, WritesElevenStringsAFace) {
  QM_FontSpecifier face = StoredFace();
  face.attributes &= ~std::uint32_t{QM_ATTRIBUTE_CHECKSUM | QM_ATTRIBUTE_FOUNDRY};
  const std::string text = kList.Written(ArrayOf(face));
  const auto entry = [](const std::string& key, const std::string& value) {
    return "\t\t<key>" + key + "</key>\n\t\t<string>" + value + "</string>\n";
  };
  EXPECT_EQ(text, kListHead + "<array>\n\t<dict>\n" + entry("Checksum", "1A2B3C4D") +
                      entry("Family", "Quill &lt;&amp;&gt; Sans") + entry("FontKind", "TrueType") +
                      entry("Foundry", "") + entry("KerningChecksum", "1A2B3C4D") + entry("Keywords", "") +
                      entry("OutlineFileName", "/a/b") + entry("OutlineFileSize", "-2") + entry("Path", "") +
                      entry("PostScriptName", "Quill\x01") + entry("Version", "1.5") +
                      "\t</dict>\n</array>\n</plist>\n");
  const OwnedArray read = kList.Read(text);
  EXPECT_EQ(read->at(0).attributes, 0x703Fu) << "what was absent is held, empty";
  EXPECT_EQ(read->at(0).kerningChecksum, 0x1A2B3C4Du);
  EXPECT_EQ(read->at(0).outlineFileSize, 0xFFFFFFFEu);
}

TEST(PropertyListForm, WritesTheLongestValidBeginning) {
  const std::string cut(510, 'a');  // inside the character that follows
  for (const auto& [name, expected] : {std::pair<std::string, std::string>("Quill\xFF Sans", "Quill"),
                                       {"\xEF\xBB\xBFQuill", "Quill"},
                                       {cut + "\xC3\xA9", cut}}) {
    EXPECT_EQ(kList.Read(kList.Written(ArrayOf(NamedFace(name.c_str()))))->at(0).postScriptName.str(),
              expected);
  }
}

TEST(PropertyListForm, ReadsStringsOnly) {
  for (const auto& [element, attributes, checksum] :
       {std::tuple("<dict><key>PostScriptName</key><string>A</string></dict>", 0x1u, 0u),
        {"<dict><key>Checksum</key><string>FFFFFFFF</string></dict>", 0x4000u, 0x7FFFFFFFu},
        {"<dict><key>Checksum</key><integer>5</integer></dict>", 0u, 0u},
        {"<string>PostScriptName</string>", 0u, 0u}}) {
    const OwnedArray read = kList.Read("<array>" + std::string(element) + "</array>");
    ASSERT_EQ(read->size(), 1u) << element;
    EXPECT_EQ(read->at(0).attributes, attributes) << element;
    EXPECT_EQ(read->at(0).checksum, checksum) << element;
  }
}

TEST(PropertyListForm, WritesNoFaceAndRefusesWhatHoldsNone) {
  EXPECT_EQ(kList.Written(QM_FontArray(), 1), kListHead + "<array/>\n</plist>\n");
  for (const char* text : {"", "x", "<array/>", "<dict><key>Family</key><string>F</string></dict>",
                           "<string>s</string>", "<array><dict></array>"}) {
    kList.Read(text, 1);
  }
}

}  // namespace
}  // namespace quillmark
