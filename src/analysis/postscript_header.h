// Reads names out of the clear-text header of a PostScript font program (Adobe Type 1 Font Format, chapter 2;
// Adobe CID-Keyed Font Files). The functions take a header as two texts of one length: its bytes, and a copy
// to search in, in lower case and with "_" for each zero byte. Every scan is one pass. Tests:
// tests/analysis/postscript_test.cc; fuzz/postscript_header_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_POSTSCRIPT_HEADER_H_
#define QUILLMARK_ANALYSIS_POSTSCRIPT_HEADER_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/collected_face.h"
#include "platform/byte_reader.h"
#include "support/om_string.h"

namespace quillmark {

// The copy to search in.
std::string LowerCasedHeader(std::string_view data);

// Finds a key, such as "/notice", and returns its value: the text up to the bracket that matches the opening
// one, or a word up to the next blank; a zero byte ends either, and so do 3999 bytes. Nothing without the
// key.
std::optional<std::string> findBlobForToken(std::string_view lowered, std::string_view data,
                                            std::string_view key);

// Finds a comment's key (case counts) and returns the text between the first delimiter after it, with any
// blanks, and the next delimiter. Nothing without the key.
std::optional<std::string> GetDelimitedKeyValue(std::string_view data, std::string_view key,
                                                std::string_view delimiters);

// The values found in one header; a value may be found and empty.
struct PostScriptHeader {
  bool is_multiple_master = false;
  std::optional<std::string> cid_version, version;
  std::optional<std::string> family_name, comment_family_name;
  std::optional<std::string> cid_font_name, font_name, comment_font_name;
  std::optional<std::string> full_name;
  // The maker's own words, only where a known maker is named, in them or anywhere in the header. A copyright
  // is looked at only when there is no notice.
  bool has_notice = false;
  std::optional<std::string> foundry;
};

// The comment that opens a font program is looked for from the third byte on, since a POST resource begins
// with two bytes of type. So it is not found at the start of a file; stored results rely on that. The foundry
// is looked for only when it is wanted.
PostScriptHeader ReadPostScriptHeader(std::string_view data, bool wants_foundry);
// The same for the bytes of a POST resource, whose zero bytes read as "_".
PostScriptHeader ReadPostHeader(Bytes resource, bool wants_foundry);

// Adds a header's values to the names and to the name of the kind; a name that several keys can give takes
// the first. The display and full names are taken only when `request` (QM_Attribute bits) asks for the
// PostScript name: stored results rely on it.
void GatherPostScriptMetaData(const PostScriptHeader& header, std::uint32_t request, FaceNames& names,
                              OmString& kind_name);

}  // namespace quillmark

#endif
