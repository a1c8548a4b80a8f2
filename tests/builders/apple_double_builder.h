// Builds an AppleDouble file: a header, a table of entries, and their bytes in the order they were added.
//   std::string sidecar = AppleDoubleBuilder().FinderInfo("FFIL", "DMOV").ResourceFork(fork).Build();
#ifndef QUILLMARK_TESTS_BUILDERS_APPLE_DOUBLE_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_APPLE_DOUBLE_BUILDER_H_

#include <utility>

#include "builders/big_endian.h"

namespace quillmark {

class AppleDoubleBuilder : public SpoilableBuilder {
 public:
  // Offset in the file of the number of entries, and of the first entry (ID, start, length).
  static constexpr std::size_t kCountOffset = 24;
  static constexpr std::size_t kFirstEntryOffset = 26;

  AppleDoubleBuilder& Entry(std::uint32_t number, std::string bytes) {
    entries_.emplace_back(number, std::move(bytes));
    return *this;
  }
  AppleDoubleBuilder& ResourceFork(std::string fork) { return Entry(2, std::move(fork)); }
  // 32 bytes of Finder information with these codes of four characters.
  AppleDoubleBuilder& FinderInfo(std::string_view type, std::string_view creator) {
    return Entry(9, BigEndianWriter().Text(type).Text(creator).Zeros(24).bytes());
  }

 protected:
  std::string Lay() const override {
    BigEndianWriter file;
    file.U32(0x00051607).U32(0x00020000).Zeros(16).U16(entries_.size());
    std::size_t start = kFirstEntryOffset + 12 * entries_.size();
    for (const auto& [number, bytes] : entries_) {
      file.U32(number).U32(start).U32(bytes.size());
      start += bytes.size();
    }
    for (const auto& [number, bytes] : entries_) file.Text(bytes);
    return file.bytes();
  }

 private:
  std::vector<std::pair<std::uint32_t, std::string>> entries_;
};

}  // namespace quillmark

#endif
