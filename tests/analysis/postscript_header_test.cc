#include "analysis/postscript_header.h"

#include <gtest/gtest.h>

#include <utility>

#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

using std::string_literals::operator""s;

TEST(PostScriptHeader, FindsTheValueOfAKey) {
  const std::pair<std::string, std::string> rows[] = {
      {"/nOtIcE (MiXed) /Notice (b)", "MiXed"},
      {"/Notice (a (b (c)) ] d) def", "a (b (c)) ] d"},
      {"/Notice [a [b] (c] d]", "a [b] (c"},
      {"/Notice /a/b\nc\rd e", "a/b\nc\rd"},  // a name ends at a blank, at nothing else
      {"/Notice \n \n(x)", "x"},
      {"/Notice \r(a b)", "\r(a"},  // only blanks and line feeds are skipped
      {"/Notice (a (b) c", "a (b) c"},
      {"/Notice (ab\0cd)"s, "ab"},
      {"/Notice " + std::string(1 << 20, '('), std::string(3999, '(')},
  };
  for (const auto& [header, value] : rows) {
    EXPECT_EQ(findBlobForToken(LowerCasedHeader(header), header, "/notice"), value) << header.substr(0, 40);
  }
}

// What headers give, one after the other.
struct Gathered {
  FaceNames names;
  OmString kind;

  std::string Add(const PostScriptHeader& header) {
    GatherPostScriptMetaData(header, QM_ATTRIBUTES_ALL, names, kind);
    return kind.str() + "|" + names.version.str() + "|" + names.family.str() + "|" +
           names.post_script_name.str() + "|" + names.foundry.str();
  }
};

TEST(PostScriptHeader, PrefersOneKeyToAnother) {
  const std::pair<const char*, const char*> rows[] = {
      {"%!PS-AdobeFont-1.0: QuillSans-Bold 1.05\n%%Creator: None\n/FontInfo 9 dict dup begin\n"
       "/version (1.05) readonly def\n/Notice (Copyright (URW)++, 2014) readonly def\n"
       "/FullName (Quill Sans Bold) readonly def\n/FamilyName (Quill Sans) readonly def\nend readonly def\n"
       "/FontName /QuillSans-Bold def",
       "PostScript|1.05|Quill Sans|QuillSans-Bold|Copyright (URW)++, 2014"},
      {"/version (1) /FontName /F /CIDFontVersion 2.0 /CIDFontName /C def", "PostScript|2.0||C|"},
      {"/FullName (Times Roman) readonly def", "PostScript||Times Roman|Times Roman|"},
      {"\1\1%!PS-AdobeFont-1.0: A-B 1\n/FullName (C D)", "PostScript||A|C D|"},
      {"%!PS-AdobeFont-1.0: A-B 1\n", "PostScript||||"},  // at the first byte it is not seen
      {"/FamilyName () /FontName () /FullName (C D)", "PostScript||C D||"},
      {"/Notice (Qqq) % URW", "PostScript||||Qqq"},
      {"/Notice (Qqq) /Copyright (Qqq)", "PostScript||||"},
      {"/Copyright (URW 1990)", "PostScript||||URW 1990"},
      {"/Notice () /Copyright (URW 1990)", "PostScript||||"},
  };
  for (const auto& [header, expected] : rows) {
    Gathered all;
    EXPECT_EQ(all.Add(ReadPostScriptHeader(header, true)), expected) << header;
    EXPECT_EQ(all.names.display_name.str(), all.names.post_script_name.str()) << header;
    FaceNames names;
    GatherPostScriptMetaData(ReadPostScriptHeader(header, false), 0, names, all.kind);
    EXPECT_EQ(names.foundry.str() + names.post_script_name.str() + names.full_name.str(), "")
        << "not asked for";
  }
}

TEST(PostScriptHeader, ReplacesOnlyWhatAKeyMayReplace) {
  Gathered all;
  const auto gather = [&all](const char* header) { return all.Add(ReadPostScriptHeader(header, true)); };
  gather("/WeightVector /version 9 /FamilyName (old) /FontName (Old) /Notice (old URW)");
  EXPECT_EQ(gather("/version 1 /FullName (New) /Copyright (URW)"), "PostScript - MM|9|old|Old|old URW");
  EXPECT_EQ(gather("/CIDFontVersion 2 /FamilyName (New) /FontName (New) /Notice (URW)"),
            "PostScript - MM|2|New|New|URW");
}

TEST(PostScriptHeader, TakesAResourceCutAnywhere) {
  const std::string header =
      "\1\0%!PS-AdobeFont-1.0: A\0B-C\n/CIDFontVersion [1 [2]] /Notice (a\0URW) /FullName {F B}"s;
  std::string found;
  for (std::size_t length = 0; length <= header.size(); ++length) {
    found = Gathered().Add(ReadPostHeader(AsBytes(header).first(length), true));
  }
  EXPECT_EQ(found, "PostScript|1 [2]|A_B|F B|a_URW");
}

}  // namespace
}  // namespace quillmark
