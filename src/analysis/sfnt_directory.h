// The table directory of an sfnt font (OpenType table directory), and what its tables decide: the platform,
// and the kerning checksum. Directory checksums are not verified. Tests:
// tests/analysis/font_file_test.cc; fuzz/sfnt_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_SFNT_DIRECTORY_H_
#define QUILLMARK_ANALYSIS_SFNT_DIRECTORY_H_

#include <cstdint>
#include <optional>

#include "analysis/sfnt_data.h"
#include "support/om_string.h"

namespace quillmark {

struct TDirectoryEntry {
  std::uint32_t tag = 0;
  std::uint32_t checksum = 0;
  std::uint32_t offset = 0;  // bytes from the start of the font
  std::uint32_t length = 0;  // bytes
};

// `stated`: the number of tables in the directory's header, a signed number; nothing when the font ends
// before it. `listed`: how many entries are read: one counts only when at least one byte of the font follows
// it.
struct SfntTableCount {
  std::optional<std::int16_t> stated;
  std::uint32_t listed = 0;
};
SfntTableCount CountTables(const SfntData& font);

// The first entry of that tag. `tag` has four characters. Entries are searched in file order, since the
// directories of real fonts may be unsorted.
std::optional<TDirectoryEntry> FindSpecifiedTable(const SfntData& font, const char* tag);

// Whether the font is variable: it has an fvar table.
bool HasVariationAxes(const SfntData& font);

// Whether offset + length, a 32-bit sum that wraps, is at most the font's size. An entry that passes may
// therefore still lie outside; SfntData bounds every read.
bool ValidateDirectoryEntry(const std::optional<TDirectoryEntry>& entry, const SfntData& font);

// Writes "crossplatform" for a font with every table that both systems need, else "mac". False, writing
// nothing, for fewer than 5 bytes or a null `platform`.
bool GetPlatformTTF(const SfntData& font, OmString* platform);

// The word sum of the kern table, failing that GPOS, failing that glyf. False, leaving `checksum` alone, when
// the chosen table does not validate.
bool GetTrueTypeKerningTableChecksum(const SfntData& font, std::uint32_t* checksum);

}  // namespace quillmark

#endif
