// Reads names out of the clear-text header of a PostScript font program (Adobe Type 1 Font Format, chapter 2;
// Adobe CID-Keyed Font Files). A header comes as two texts of one length: its bytes, and a copy in which to
// search, in lower case and with "_" for each zero byte. Every scan is one pass. Tests:
// tests/analysis/postscript_header_test.cc; fuzz/postscript_header_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_POSTSCRIPT_HEADER_H_
#define QUILLMARK_ANALYSIS_POSTSCRIPT_HEADER_H_

#include <string>
#include <string_view>

#include "analysis/face_outputs.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

// The copy to search in.
std::string LowerCasedHeader(std::string_view data);

// Finds a key, such as "/notice", and stores what stands behind it: the text up to the bracket that matches
// the opening one, or a word up to the next blank; a zero byte ends either, and so do 3999 bytes. False, with
// `value` as it was, without the key.
bool findBlobForToken(std::string_view lowered, std::string_view data, std::string_view key, OmString* value);

// Finds a comment's key, its case counting, and stores what stands between the first delimiter behind it (and
// blanks) and the next. False, with `value` as it was, without the key.
bool GetDelimitedKeyValue(std::string_view data, std::string_view key, std::string_view delimiters,
                          OmString* value);

// Fills the wanted outputs from a header; a name that several keys can give takes the first. The comment that
// opens a font program is looked for from the third byte on, since a POST resource begins with two bytes of
// type. So it is not found at the start of a file; stored results rely on that.
void GatherPostScriptMetaDataFromData(std::string_view lowered, std::string_view data,
                                      const FaceOutputs& outputs);
// The same from a POST resource, whose zero bytes read as "_". A null handle gives nothing.
void GatherMetaDataFromHandle(Handle handle, const FaceOutputs& outputs);

}  // namespace quillmark

#endif
