#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/core_foundation/core_foundation.h"

namespace quillmark {
namespace {

using namespace std::string_literals;

// The elements that a text is written as again, "refused", or "unwritable".
std::string Rewritten(std::string_view text) {
  const std::string head =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n";
  const std::string tail = "</plist>\n";
  const auto data =
      Adopt(CFDataCreate(nullptr, AsBytes(text).data(), static_cast<CFIndex>(AsBytes(text).size())));
  CFRef<CFStringRef> error;
  const auto list =
      Adopt(CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, error.Receive()));
  EXPECT_NE(static_cast<bool>(list), static_cast<bool>(error)) << "always exactly one";
  if (!list) return "refused";
  const auto written = Adopt(CFPropertyListCreateXMLData(nullptr, list.get()));
  if (!written) return "unwritable";
  const std::string& all = written.get()->bytes;
  EXPECT_TRUE(all.starts_with(head) && all.ends_with(tail)) << all;
  return all.substr(head.size(), all.size() - head.size() - tail.size());
}

std::string Element(const std::string& type, const std::string& text) {
  return "<" + type + ">" + text + "</" + type + ">";
}

std::string Repeat(std::string_view text, std::size_t times) {
  std::string repeated;
  for (; times > 0; --times) repeated += text;
  return repeated;
}

void Check(std::initializer_list<std::pair<std::string, std::string>> rows) {
  for (const auto& [text, rewritten] : rows) EXPECT_EQ(Rewritten(text), rewritten) << text;
}

void CheckRefused(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) EXPECT_EQ(Rewritten(text), "refused") << text.substr(0, 200);
}

TEST(PropertyList, ToleratesWhatMayBeMissingOrBetween) {
  Check({
      {"<true/>", "<true/>\n"},
      {"\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?> \t\r\n<true></true>", "<true/>\n"},
      {"<!-- > --><!DOCTYPE plist><?a b?><plist a='x' b=\"/\"><!-- --><true/><?c?></plist >", "<true/>\n"},
      {"<true/>anything & <behind", "<true/>\n"},
      {"<array a='>' />", "refused"},  // the tag ends at the first >
      {"<array>\n<!-- - --><?x?>\t<dict></dict><array/></array>",
       "<array>\n\t<dict/>\n\t<array/>\n</array>\n"},
      {"<array><plist><true/></plist></array>", "<array>\n\t<true/>\n</array>\n"},
      {"<string/>", "<string></string>\n"},
      {"<key>outside</key>", "<string>outside</string>\n"},
  });
}

TEST(PropertyList, RefusesMalformedStructure) {
  CheckRefused({"", "<", "<plist/>", "text", "<Array/>", "<set/>", "< array/>", "<array/ >", "</array>"});
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
  const std::string odd = "\x01\x7F\0'\"\xEF\xBF\xBE\xEF\xBF\xBF"s;
  const std::pair<std::string, std::string> rows[] = {
      {" a\r\nb\tc\rd ", " a\r\nb\tc\rd "},
      {odd, odd},
      {"&amp;&lt;&gt;&quot;&apos;", "&amp;&lt;&gt;\"'"},
      {"&#65;&#x42;&#x0010fFfF;&#00000033;", "AB\xF4\x8F\xBF\xBF!"},
      {"a<![CDATA[<b>&amp;]]]>c", "a&lt;b&gt;&amp;amp;]c"},
      {"\xEF\xBB\xBF!", "\xEF\xBB\xBF!"}};
  for (const auto& [content, written] : rows) {
    EXPECT_EQ(Rewritten(Element("string", content)), Element("string", written) + "\n");
  }
  for (const std::string content : {"a & b", "&nbsp;", "&AMP;", "&#X41;", "&#x000000041;", "&#000000065;",
                                    "&#;", "&#x;", "&#4G;", "&#-1;", "&#xD800;", "&#57343;", "&#x110000;",
                                    "a<!-- -->b", "<b/>", "<![CDATA[ ]>", "\xC0\x80", "\xED\xA0\x80"}) {
    EXPECT_EQ(Rewritten(Element("string", content)), "refused") << content;
  }
  CheckRefused({"<string>&amp", "<string>a</ string>", "<dict><key>\xFF</key><true/></dict>"});
}

TEST(PropertyList, SortsKeysByCodeUnitAndKeepsTheLastValue) {
  Check({
      // U+FB01 sorts behind the surrogates of U+1D11E, though its code is smaller.
      {"<dict><key>\xEF\xAC\x81</key><true/><key>\xF0\x9D\x84\x9E</key><true/><key>a</key><true/>"
       "<key/><true/></dict>",
       "<dict>\n\t<key></key>\n\t<true/>\n\t<key>a</key>\n\t<true/>\n\t<key>\xF0\x9D\x84\x9E</key>\n"
       "\t<true/>\n\t<key>\xEF\xAC\x81</key>\n\t<true/>\n</dict>\n"},
      {"<dict><key>a</key><false/><key>b</key><key>c</key><key>a</key><true/></dict>",
       "<dict>\n\t<key>a</key>\n\t<true/>\n\t<key>b</key>\n\t<string>c</string>\n</dict>\n"},
  });
  CheckRefused({"<dict><key>a</key></dict>", "<dict><true/></dict>", "<dict><string>a</string><true/></dict>",
                "<dict><key>a</key><true/><key>b</key></dict>", "<dict><key>a</key><true/><true/></dict>"});
}

TEST(PropertyList, ReadsNumbers) {
  // Each as "read=written", with nothing written of what is refused.
  const std::pair<const char*, std::vector<std::string>> types[] = {
      {"integer",
       {"0=0", "-0=0", "+007=7", " \n- 5=-5", "0x1aF=431", "-0x10=-16",
        "-9223372036854775808=-9223372036854775808", "9223372036854775808=9223372036854775808",
        "18446744073709551615=18446744073709551615", "-9223372036854775809=", "18446744073709551616=", "=",
        "-=", "+-1=", "0x=", "1 =", "1.0=", "1a="}},
      {"real",
       {"0.1=0.10000000000000001", " +1e17=1e+17", "1.0=1", "-0=0.0", "-1.5E-3=-0.0015", "1e999=+infinity",
        "-1e999=-infinity", "INFINITY=+infinity", "-inf=-infinity", "+NaN=nan", "=",
        "1 =", "1,5=", "0x1=", "1e=", "--1=", "infinit=", "nan(1)="}}};
  for (const auto& [type, rows] : types) {
    for (const std::string& row : rows) {
      const std::size_t sign = row.find('=');
      const std::string written = row.substr(sign + 1);
      EXPECT_EQ(Rewritten(Element(type, row.substr(0, sign))),
                written.empty() ? "refused" : Element(type, written) + "\n");
    }
  }
}

TEST(PropertyList, ReadsDataAndDates) {
  const std::string two_lines = Element("data", Repeat("AAAA", 20));
  Check({
      {"<data></data>", "<data>\n</data>\n"},
      {"<data> Q-U\nE=!</data>", "<data>\nQUE=\n</data>\n"},
      {"<data>QQ==</data>", "<data>\nQQ==\n</data>\n"},
      {"<data>QUJDQUE</data>", "<data>\nQUJD\n</data>\n"},  // the last group lacks its padding
      {two_lines, "<data>\n" + std::string(76, 'A') + "\nAAAA\n</data>\n"},
      {"<date>2023-13-32T25:61:61Z</date>", "<date>2024-02-02T02:02:01Z</date>\n"},
      {"<date>0000-02-29T00:00:00Z</date>", "<date>0000-02-29T00:00:00Z</date>\n"},
      {"<array><true/><date>9999-12-32T00:00:00Z</date></array>", "unwritable"},
      {"<date>2001-01-01T00:00:00</date>", "refused"},
  });
}

TEST(PropertyList, BoundsNesting) {
  const std::tuple<std::string, std::string, std::size_t> rows[] = {// and the most levels of each
                                                                    {"<array>", "</array>", 512},
                                                                    {"<dict><key>k</key>", "</dict>", 512},
                                                                    {"<plist>", "</plist>", 513}};
  for (const auto& [start, end, most] : rows) {
    EXPECT_NE(Rewritten(Repeat(start, most) + "<true/>" + Repeat(end, most)), "refused") << start;
    EXPECT_EQ(Rewritten(Repeat(start, most + 1) + "<true/>" + Repeat(end, most + 1)), "refused") << start;
  }
  CheckRefused({Repeat("<array>", 513) + Repeat("</array>", 513), Repeat("<array>", 1000000)});
}

TEST(PropertyList, EveryBeginningOfAListIsRefused) {
  const std::string text =
      "<?xml version=\"1.0\"?><plist><dict><key>a&#233;</key><array><string>b<![CDATA[c]]></string>"
      "<data>QUJD</data><date>2001-01-01T00:00:00Z</date><real>1.5</real><integer>-7</integer><true/><dict/>"
      "</array></dict></plist>";
  for (std::size_t length = 0; length < text.size(); ++length) CheckRefused({text.substr(0, length)});
}

}  // namespace
}  // namespace quillmark
