// The decision what kind of font a file holds: by its resources, its extension, and last its first bytes.
// Tests: tests/analysis/font_file_test.cc.
#ifndef QUILLMARK_ANALYSIS_FONT_KIND_H_
#define QUILLMARK_ANALYSIS_FONT_KIND_H_

#include <cstdint>
#include <optional>
#include <string>

#include "platform/files/font_file.h"
#include "resources/family.h"

namespace quillmark {

class QuillmarkResourceFile;

// The order counts: kinds read from sfnt tables come first, and KindName's texts stand in it. The numbers
// differ from those of FontExtension, which fontTypeFromExtension answers.
enum FontKind : std::int16_t {
  kKindTrueType = 0,
  kKindOpenTypeTT = 1,
  kKindOpenTypePS = 2,
  kKindPostScript = 3,
  kKindPostScriptMM = 4,
  kKindCollection = 5,
  kKindUnknown = 6,
};

// The kind's name, as hosts receive it; empty for kKindUnknown.
const char* KindName(FontKind kind);

// Only this much of a path is looked at to find the extension and to open the data fork, as the system does
// it.
inline constexpr std::size_t kLongestFontPath = 1023;  // bytes

// The kind of a file whose font is in its data fork. `data` is that fork, if it could be opened; `resources`
// (may be null) its resource file, which holds no fonts.
FontKind getMetaData_FontType(const std::string& path, const std::optional<RegularFile>& data,
                              QuillmarkResourceFile* resources);
// The kind of a style of a family. `outline` holds the bytes of its `sfnt` resource, empty when it has none.
// kKindUnknown when the resources do not decide it.
FontKind KindOfStyle(QuillmarkResourceFile& resources, const Family& family, Bytes outline);

// Tests on the first bytes of the data fork, as a 32-bit number in the host's order: on a little-endian
// machine only OTTO, which reads the same both ways, can match a real font. Stored results rely on it.
bool has_ttc_ttcf_Flag(const std::optional<RegularFile>& data);
bool has_otf_TrueType_Flag(const std::optional<RegularFile>& data);
bool has_otf_OTTO_Flag(const std::optional<RegularFile>& data);
// A Windows PFM file by its size field and copyright text, or a resource file whose first `sfnt` is "typ1".
bool hasValidPSHeader(const std::optional<RegularFile>& data, QuillmarkResourceFile* resources);

}  // namespace quillmark

#endif
