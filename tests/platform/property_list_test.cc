#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/byte_reader.h"
#include "platform/cf_date.h"
#include "platform/cf_object.h"
#include "platform/cf_ref.h"
#include "platform/core_foundation.h"

namespace quillmark {
namespace {

using namespace std::string_literals;

const std::string kHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
const std::string kFooter = "</plist>\n";

struct Parsed {
  CFRef<CFPropertyListRef> list;
  CFRef<CFStringRef> error;
};

Parsed Parse(std::string_view text) {
  const Bytes bytes = AsBytes(text);
  const auto data = Adopt(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
  Parsed parsed;
  parsed.list = Adopt(
      CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, parsed.error.Receive()));
  return parsed;
}

std::string Write(CFPropertyListRef list) {
  const auto data = Adopt(CFPropertyListCreateXMLData(nullptr, list));
  if (!data) return "nothing";
  return std::string(
      AsText({CFDataGetBytePtr(data.get()), static_cast<std::size_t>(CFDataGetLength(data.get()))}));
}

// The elements that a text is written as again, "refused", or "unwritable".
std::string Rewritten(std::string_view text) {
  const Parsed parsed = Parse(text);
  EXPECT_NE(static_cast<bool>(parsed.list), static_cast<bool>(parsed.error)) << "always exactly one";
  if (!parsed.list) return "refused";
  const std::string written = Write(parsed.list.get());
  if (written == "nothing") return "unwritable";
  EXPECT_TRUE(written.starts_with(kHeader) && written.ends_with(kFooter)) << written;
  return written.substr(kHeader.size(), written.size() - kHeader.size() - kFooter.size());
}

std::string Repeat(std::string_view text, std::size_t times) {
  std::string repeated;
  for (; times > 0; --times) repeated += text;
  return repeated;
}

struct Row {
  std::string text;
  std::string rewritten;
};

void Check(std::initializer_list<Row> rows) {
  for (const Row& row : rows) EXPECT_EQ(Rewritten(row.text), row.rewritten) << row.text.substr(0, 200);
}

void CheckRefused(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) EXPECT_EQ(Rewritten(text), "refused") << text.substr(0, 200);
}

std::string StringElement(std::string_view content) {
  return "<string>" + std::string(content) + "</string>";
}

TEST(PropertyList, WritesThePlatformsText) {
  const std::string text = kHeader +
                           "<array>\n\t<dict>\n\t\t<key>Checksum</key>\n\t\t<string>0000ABCD</string>\n"
                           "\t\t<key>Key</key>\n\t\t<dict/>\n\t</dict>\n\t<array/>\n\t<true/>\n</array>\n" +
                           kFooter;
  EXPECT_EQ(Write(Parse(text).list.get()), text);
}

TEST(PropertyList, ToleratesWhatMayBeMissingOrBetween) {
  Check({
      {"<true/>", "<true/>\n"},
      {"\xEF\xBB\xBF \t\r\n<true></true>", "<true/>\n"},
      {"<?xml version='1.0' encoding='utf-8'?><plist><false/></plist>", "<false/>\n"},
      {"<!-- > --><!DOCTYPE plist><?a b?><plist a='x' b=\"/\"><!-- --><true/><?c?></plist >", "<true/>\n"},
      {"<true/>anything & <behind", "<true/>\n"},
      {"<array a='>' />", "refused"},  // the tag ends at the first >
      {"<array a=''/>", "<array/>\n"},
      {"<array>\n<!-- - --><?x?>\t<dict></dict><array/></array>",
       "<array>\n\t<dict/>\n\t<array/>\n</array>\n"},
      {"<array><plist><true/></plist></array>", "<array>\n\t<true/>\n</array>\n"},
      {"<string/>", "<string></string>\n"},
      {"<key>outside</key>", "<string>outside</string>\n"},
  });
}

TEST(PropertyList, RefusesMalformedStructure) {
  CheckRefused(
      {"", " ", "<", "<plist/>", "text", "<Array/>", "<set/>", "< array/>", "<array/ >", "</array>"});
  CheckRefused({"<plist></plist>", "<plist><true/>", "<array>text</array>", "<ARRAY></ARRAY>",
                "<array></dict>", "<array></Array>", "<array></ array>", "<array></arrayx>", "<array></array",
                "<array><? </array>"});
  CheckRefused({"<plist><true/><true/></plist>", "<array>\v<true/></array>", "<array>\xC2\xA0<true/></array>",
                "<array><!-- </array>", "<true>x</true>", "<true></false>", "bplist00\x09\x08"s,
                "{ a = b; }"});
  CheckRefused({"<array><!DOCTYPE plist></array>", "<!DOCTYPE plist [ <!ENTITY a 'b'> ]><true/>",
                "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><true/>", "\xFF\xFE<\0t\0r\0u\0e\0/\0>\0"s});
}

TEST(PropertyList, KeepsStringsAsTheyStand) {
  Check({
      {StringElement(" a\r\nb\tc\rd "), StringElement(" a\r\nb\tc\rd ") + "\n"},
      {StringElement("\x01\x7F\0'\"\xEF\xBF\xBE\xEF\xBF\xBF"s),
       StringElement("\x01\x7F\0'\"\xEF\xBF\xBE\xEF\xBF\xBF"s) + "\n"},
      {StringElement("&amp;&lt;&gt;&quot;&apos;"), StringElement("&amp;&lt;&gt;\"'") + "\n"},
      {StringElement("&#65;&#x42;&#x0010fFfF;&#00000033;"), StringElement("AB\xF4\x8F\xBF\xBF!") + "\n"},
      {StringElement("a<![CDATA[<b>&amp;]]]>c"), StringElement("a&lt;b&gt;&amp;amp;]c") + "\n"},
      {StringElement("\xEF\xBB\xBF!"), StringElement("\xEF\xBB\xBF!") + "\n"},
      {StringElement("\xC3\xA9 \xF0\x9D\x84\x9E"), StringElement("\xC3\xA9 \xF0\x9D\x84\x9E") + "\n"},
  });
  CheckRefused({StringElement("&"), StringElement("a & b"), StringElement("&nbsp;"), StringElement("&AMP;"),
                StringElement("&#X41;"), StringElement("&#x000000041;"), StringElement("&#000000065;"),
                StringElement("&#;"), StringElement("&#x;"), StringElement("&#4G;"), StringElement("&#-1;"),
                StringElement("&#xD800;"), StringElement("&#57343;"), StringElement("&#x110000;"),
                "<string>&amp", StringElement("a<!-- -->b"), StringElement("<b/>"),
                StringElement("<![CDATA[ ]>"), "<string>a</ string>", "<string>a",
                // overlong, a surrogate, cut, above 10FFFF
                StringElement("\xC0\x80"), StringElement("\xED\xA0\x80"), StringElement("\xE2\x82"),
                StringElement("\xF4\x90\x80\x80"), "<dict><key>\xFF</key><true/></dict>"});
}

TEST(PropertyList, SortsKeysByCodeUnitAndKeepsTheLastValue) {
  Check({
      // U+FB01 sorts behind the surrogates of U+1D11E, though its code is smaller.
      {"<dict><key>\xEF\xAC\x81</key><true/><key>\xF0\x9D\x84\x9E</key><true/><key>b</key><true/>"
       "<key>B</key><true/><key>aa</key><true/><key/><true/></dict>",
       "<dict>\n\t<key></key>\n\t<true/>\n\t<key>B</key>\n\t<true/>\n\t<key>aa</key>\n\t<true/>\n\t<key>b</"
       "key>\n"
       "\t<true/>\n\t<key>\xF0\x9D\x84\x9E</key>\n\t<true/>\n\t<key>\xEF\xAC\x81</key>\n\t<true/>\n</"
       "dict>\n"},
      {"<dict><key>a</key><false/><key>b</key><key>c</key><key>a</key><true/></dict>",
       "<dict>\n\t<key>a</key>\n\t<true/>\n\t<key>b</key>\n\t<string>c</string>\n</dict>\n"},
  });
  CheckRefused({"<dict><key>a</key></dict>", "<dict><true/></dict>", "<dict><string>a</string><true/></dict>",
                "<dict><key>a</key><true/><key>b</key></dict>", "<dict><key>a</key><true/><true/></dict>"});
}

TEST(PropertyList, ReadsNumbers) {
  const auto element = [](const std::string& type, const std::string& text) {
    return "<" + type + ">" + text + "</" + type + ">";
  };
  const auto check = [&](const char* type, std::initializer_list<std::string> rewritten,
                         std::initializer_list<const char*> refused) {
    for (const std::string& row : rewritten) {  // as "read=written"
      const std::size_t sign = row.find('=');
      EXPECT_EQ(Rewritten(element(type, row.substr(0, sign))), element(type, row.substr(sign + 1)) + "\n");
    }
    for (const char* text : refused) EXPECT_EQ(Rewritten(element(type, text)), "refused") << text;
  };
  check("integer",
        {"0=0", "-0=0", "+007=7", " \n- 5=-5", "0x1aF=431", "-0x10=-16",
         "-9223372036854775808=-9223372036854775808", "9223372036854775808=9223372036854775808",
         "18446744073709551615=18446744073709551615"},
        {"-9223372036854775809", "18446744073709551616", "", "-", "+-1", "0x", "1 ", "1.0", "1a"});
  check("real",
        {"0.1=0.10000000000000001", " +1e17=1e+17", "1.0=1", "-0=0.0", "-1.5E-3=-0.0015", "1e999=+infinity",
         "-1e999=-infinity", "INFINITY=+infinity", "-inf=-infinity", "+NaN=nan"},
        {"", "1 ", "1,5", "0x1", "1e", "--1", "infinit", "nan(1)"});
  CheckRefused({"<integer/>", "<real/>", "<date/>"});
}

TEST(PropertyList, ReadsDataAndDates) {
  Check({
      {"<data></data>", "<data>\n</data>\n"},
      {"<data>QUJD</data>", "<data>\nQUJD\n</data>\n"},
      {"<data> Q-U\nE=!</data>", "<data>\nQUE=\n</data>\n"},
      {"<data>QQ==</data>", "<data>\nQQ==\n</data>\n"},
      {"<data>QUJDQUE</data>", "<data>\nQUJD\n</data>\n"},  // the last group lacks its padding
      {"<date>2001-01-01T00:00:00Z</date>", "<date>2001-01-01T00:00:00Z</date>\n"},
      {"<date>2023-13-32T25:61:61Z</date>", "<date>2024-02-02T02:02:01Z</date>\n"},
      {"<date>0000-02-29T00:00:00Z</date>", "<date>0000-02-29T00:00:00Z</date>\n"},
      {"<array><true/><date>9999-12-32T00:00:00Z</date></array>", "unwritable"},
      {"<date>2001-01-01T00:00:00</date>", "refused"},
      {"<date>2001-01-01 00:00:00Z</date>", "refused"},
      {"<date>-001-01-01T00:00:00Z</date>", "refused"},
  });
}

TEST(PropertyList, BreaksDataLinesByTheirLevel) {
  const std::string data = "<data>" + Repeat("AAAA", 20) + "</data>";
  EXPECT_EQ(Rewritten(data), "<data>\n" + std::string(76, 'A') + "\nAAAA\n</data>\n");
  const std::string deep = Rewritten(Repeat("<array>", 9) + data + Repeat("</array>", 9));
  EXPECT_NE(deep.find("\n" + std::string(9, '\t') + "<data>\n" + std::string(8, '\t') + std::string(12, 'A') +
                      "\n"),
            std::string::npos)
      << deep;
  EXPECT_NE(deep.find("\n" + std::string(8, '\t') + std::string(8, 'A') + "\n" + std::string(9, '\t') +
                      "</data>\n"),
            std::string::npos)
      << deep;
}

TEST(PropertyList, BoundsNesting) {
  struct {
    std::string text;
    bool is_accepted;
  } const rows[] = {
      {Repeat("<array>", 512) + Repeat("</array>", 512), true},
      {Repeat("<array>", 512) + "<array/><true/>" + Repeat("</array>", 512), true},
      {Repeat("<array>", 513) + Repeat("</array>", 513), false},
      {"<plist>" + Repeat("<array>", 512) + "<dict/>" + Repeat("</array>", 512) + "</plist>", true},
      {"<plist>" + Repeat("<array>", 513) + Repeat("</array>", 513) + "</plist>", false},
      {Repeat("<dict><key>k</key>", 512) + "<true/>" + Repeat("</dict>", 512), true},
      {Repeat("<dict><key>k</key>", 513) + "<true/>" + Repeat("</dict>", 513), false},
      {Repeat("<plist>", 513) + "<true/>" + Repeat("</plist>", 513), true},
      {Repeat("<plist>", 514) + "<true/>" + Repeat("</plist>", 514), false},
      {Repeat("<array>", 1000000), false},
  };
  for (const auto& row : rows) {
    const std::string rewritten = Rewritten(row.text);
    EXPECT_EQ(rewritten != "refused", row.is_accepted) << row.text.substr(0, 40);
    if (row.is_accepted) {
      EXPECT_EQ(Rewritten(rewritten), rewritten);
    }
  }
}

TEST(PropertyList, WritesNothingForWhatHasNoText) {
  EXPECT_EQ(Write(nullptr), "nothing");
  const UniChar lone_surrogate[] = {'a', 0xD800};
  EXPECT_EQ(Write(Adopt(CFStringCreateWithCharacters(nullptr, lone_surrogate, 2)).get()), "nothing");
  EXPECT_EQ(Write(Adopt(new CFDateObject(1e12)).get()), "nothing");
  EXPECT_EQ(Rewritten(Write(Adopt(new CFDateObject(-0.5)).get())), "<date>2000-12-31T23:59:59Z</date>\n");
  CFRef<CFMutableArrayRef> outer;
  for (int level = 0; level < 514; ++level) {
    const auto inner = outer;
    outer = Adopt(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    if (inner) CFArrayAppendValue(outer.get(), inner.get());
  }
  EXPECT_EQ(Write(outer.get()), "nothing") << "the reader would not take it";
}

TEST(PropertyList, ContainersOfATreeCanBeChanged) {
  const Parsed parsed = Parse("<array><dict><key>a</key><true/></dict></array>");
  const auto dictionary =
      static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(parsed.list.get()), 0));
  const auto key = Adopt(CFStringCreateWithCString(nullptr, "a", kCFStringEncodingUTF8));
  CFDictionarySetValue(const_cast<CFMutableDictionaryRef>(dictionary), key.get(), kCFBooleanFalse);
  EXPECT_EQ(CFDictionaryGetValue(dictionary, key.get()), kCFBooleanFalse);
}

TEST(PropertyList, SaysOnWhichLineTheFaultStands) {
  const Parsed parsed = Parse("<array>\n<true/>\n<bad/>\n</array>\n");
  char text[200];
  ASSERT_TRUE(parsed.error &&
              CFStringGetCString(parsed.error.get(), text, sizeof text, kCFStringEncodingUTF8));
  EXPECT_TRUE(std::string(text).ends_with("on line 3")) << text;
}

TEST(PropertyList, EveryBeginningOfAListIsRefusedWithoutALeak) {
  const std::int64_t before = cf::Object::LiveCount();
  const std::string text =
      "<?xml version=\"1.0\"?><plist><dict><key>a&#233;</key><array><string>b<![CDATA[c]]></string>"
      "<data>QUJD</data><date>2001-01-01T00:00:00Z</date><real>1.5</real><integer>-7</integer><true/><dict/>"
      "</array></dict></plist>";
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_EQ(Rewritten(text.substr(0, length)), "refused") << length;
  }
  EXPECT_NE(Rewritten(text), "refused");
  EXPECT_EQ(cf::Object::LiveCount(), before);
}

}  // namespace
}  // namespace quillmark
