// The kerning table of a FOND (Inside Macintosh: Text, "The Kerning Tables") and the checksums of the part of
// it that belongs to one style. Stored checksums rely on the order in which the sub-tables are read, and on
// how damaged ones are handled. Tests: tests/analysis/face_checksums_test.cc;
// fuzz/kerning_checksum_fuzzer.cc.
#ifndef QUILLMARK_RESOURCES_FOND_KERNING_H_
#define QUILLMARK_RESOURCES_FOND_KERNING_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/budget.h"
#include "platform/byte_reader.h"

namespace quillmark {

// Walks the table once, for all the styles of the family. Reads the FOND where it lies, which must outlive
// the object.
class FondKerning {
 public:
  explicit FondKerning(Bytes fond, Budget* budget = nullptr);

  // Wrapping sum of the bytes of the style's sub-tables, headers and pairs.
  std::uint32_t SumOfBytes(std::int16_t style) const;
  // CRC over the pairs of the style's sub-tables, in table order.
  std::uint32_t CrcOfPairs(std::int16_t style) const;

 private:
  // A header of style code and pair count, then pairs of 4 bytes.
  struct SubTable {
    static constexpr std::size_t kHeaderSize = 4;

    std::int16_t style = 0;
    std::size_t start = 0;       // of the header, from the start of the FOND
    std::size_t pairs_size = 0;  // bytes after it; 0 without pairs, or when they pass the FOND's end
  };

  void Walk();
  std::span<const SubTable> SubTablesOf(std::int16_t style) const;
  Bytes Range(std::size_t start, std::size_t length) const;  // inside the FOND

  Bytes fond_;
  Budget* budget_;
  std::vector<SubTable> sub_tables_;  // by style, within it in the order they were met
};

}  // namespace quillmark

#endif
