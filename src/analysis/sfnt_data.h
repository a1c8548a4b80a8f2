// The bytes of one stand-alone sfnt font: in memory, or in a file of which only the ranges asked for are
// read. Offsets and lengths are in bytes from the start of the font; nothing outside [0, size) is ever handed
// out. For one thread at a time. Tests: tests/analysis/sfnt_data_test.cc.
#ifndef QUILLMARK_ANALYSIS_SFNT_DATA_H_
#define QUILLMARK_ANALYSIS_SFNT_DATA_H_

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/forks.h"

namespace quillmark {

class SfntData {
 public:
  // A view: the bytes must outlive the object. At most the first 0xFFFFFFFF count.
  explicit SfntData(Bytes font);
  // The first `size` bytes of the file. What cannot be read is zero.
  SfntData(RegularFile file, std::uint32_t size);

  std::uint32_t size() const { return size_; }

  // The bytes [offset, offset + length), or nothing when they do not all lie inside the font. The span lives
  // as long as this object: what is read of a file is kept, and answers later calls that lie within it.
  // Meant for the few tables that are parsed; SumOfWords goes over large ones.
  std::optional<Bytes> Range(std::uint32_t offset, std::uint32_t length) const;

  // The 32-bit wrapping sum of the big-endian words in [offset, offset + length), as SumBigEndianWords, or
  // nothing when they do not all lie inside the font. A file is read in blocks of which none is kept.
  std::optional<std::uint32_t> SumOfWords(std::uint32_t offset, std::uint32_t length) const;

 private:
  struct Piece {
    std::uint32_t offset;
    std::vector<std::uint8_t> bytes;
  };
  bool Contains(std::uint32_t offset, std::uint32_t length) const;

  Bytes memory_;
  std::optional<RegularFile> file_;
  std::uint32_t size_ = 0;
  mutable std::vector<Piece> pieces_;  // of the file
};

}  // namespace quillmark

#endif
