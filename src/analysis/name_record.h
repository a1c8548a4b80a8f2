// The records of an sfnt font's `name` table (OpenType name table) and their text. name_table.h decides which
// record is preferred. Tests: tests/analysis/names_test.cc; fuzz/sfnt_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_NAME_RECORD_H_
#define QUILLMARK_ANALYSIS_NAME_RECORD_H_

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "analysis/sfnt_data.h"

namespace quillmark {

struct NameRecord {
  std::int16_t platform_id = 0;
  std::int16_t encoding_id = 0;
  std::int16_t language_id = 0;
  std::int16_t name_id = 0;
  // Whether this or an earlier record is Japanese, which decides how single-byte texts are read.
  bool is_japanese = false;
  Bytes text;  // at most 1023 bytes of the font; empty when they do not lie inside it
};

// Why a font gives no names.
struct NameFault {
  enum Kind {
    kNoDirectory,    // the font, of `size` bytes, ends before its list of tables
    kNoTables,       // the header states 0 tables
    kTooManyTables,  // the header states `stated`, more than a signed number holds
    kCutDirectory,   // of the `stated` tables `found` are listed, and no name table is among them
    kNoTable,        // the directory has no name table
    kOffsetZero,
    kPastEnd,       // the table runs to byte `end`, and the font has `size`
    kCutHeader,     // the table ends inside its header
    kNoNames,       // the name table states 0 records
    kCutRecords,    // it ends before its first name
    kNoTextInside,  // every text is empty or lies outside the font
    kNoValidText,   // no text is valid
  };
  Kind kind;
  std::uint32_t stated = 0;
  std::uint32_t found = 0;
  std::uint64_t end = 0;
  std::uint64_t size = 0;
};

// Every record that lies inside the font, in table order. The texts point into `font`.
using NameRecords = std::vector<NameRecord>;
std::variant<NameRecords, NameFault> ReadNameRecords(const SfntData& font);

// Whether a record's bytes are read as 16-bit units. True for Macintosh Japanese too, whose bytes are not:
// stored results rely on it.
bool IsDoubleBytePlatform(std::int16_t platform_id, std::int16_t encoding_id, std::int16_t language_id);

// How a record's bytes are read.
enum class NameEncoding : std::uint8_t { kSingleByte, kUtf16, kShiftJis };
NameEncoding EncodingOf(const NameRecord& record);

// The record's text up to its first zero, in UTF-8; empty when it is invalid in its encoding.
std::string DecodeNameText(const NameRecord& record);

}  // namespace quillmark

#endif
