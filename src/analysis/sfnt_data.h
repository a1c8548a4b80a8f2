// The bytes of one stand-alone sfnt font: in memory, in a file of which only the ranges asked for are read,
// or in the tables of a collection. Offsets and lengths are in bytes from the start of the font; nothing
// outside [0, size) is ever handed out. For one thread at a time. Tests: tests/analysis/font_file_test.cc.
#ifndef QUILLMARK_ANALYSIS_SFNT_DATA_H_
#define QUILLMARK_ANALYSIS_SFNT_DATA_H_

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/files/paged_file.h"
#include "platform/files/regular_file.h"

namespace quillmark {

class SfntData {
 public:
  // A view: the bytes must outlive the object. At most the first 0xFFFFFFFF count.
  explicit SfntData(Bytes font, Budget* budget = nullptr);
  // The first `size` bytes of the file. What cannot be read is zero.
  SfntData(RegularFile file, std::uint32_t size, Budget* budget = nullptr);
  struct Table {
    std::uint32_t offset, length;           // in the file, inside it
    std::optional<std::uint32_t> word_sum;  // as SumBigEndianWords, where it is known
  };
  // A directory, then tables of a file, which must outlive this object; each is padded with zeros to a
  // multiple of 4. Together at most 0xFFFFFFFF bytes.
  SfntData(std::vector<std::uint8_t> directory, const PagedFile& file, const std::vector<Table>& tables,
           Budget* budget = nullptr);
  SfntData(SfntData&&) = default;
  SfntData& operator=(SfntData&&) = default;

  std::uint32_t size() const { return size_; }
  // Charged for every range handed out; null: no bound.
  Budget* budget() const { return budget_; }

  // The bytes [offset, offset + length), or nothing when they do not all lie inside the font. The span lives
  // as long as this object: what is read of a file, or joined from several tables, is kept and answers later
  // calls that lie within it. Meant for the few tables that are parsed; SumOfWords goes over large ones.
  std::optional<Bytes> Range(std::uint32_t offset, std::uint32_t length) const;

  // The 32-bit wrapping sum of the big-endian words in [offset, offset + length), as SumBigEndianWords, or
  // nothing when they do not all lie inside the font. A file is read in blocks of which none is kept.
  std::optional<std::uint32_t> SumOfWords(std::uint32_t offset, std::uint32_t length) const;

 private:
  struct Piece {
    std::uint32_t offset;
    std::vector<std::uint8_t> bytes;
  };
  // The directory or a table; zeros fill the space up to the next part.
  struct Part {
    std::uint32_t start, length;
    std::optional<Table> table;  // none: the directory
  };
  bool Contains(std::uint32_t offset, std::uint32_t length) const;
  // The last part that begins at or before `offset`.
  std::vector<Part>::const_iterator PartAt(std::uint32_t offset) const;
  // Some bytes of a part, when they lie inside it.
  std::optional<Bytes> RangeOf(const Part& part, std::size_t offset, std::size_t length) const;
  // The range, when it lies in memory in one piece and needs no copy.
  std::optional<Bytes> View(std::uint32_t offset, std::uint32_t length) const;
  // Fills `block`, which lies inside the font, from `offset` on.
  void Read(std::uint32_t offset, std::span<std::uint8_t> block) const;

  Budget* budget_ = nullptr;
  Bytes memory_;
  std::optional<RegularFile> file_;
  std::vector<std::uint8_t> directory_;
  const PagedFile* tables_file_ = nullptr;
  std::vector<Part> parts_;
  std::uint32_t size_ = 0;
  mutable std::vector<Piece> pieces_;  // of the file, or joined from parts
};

}  // namespace quillmark

#endif
