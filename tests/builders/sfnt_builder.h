// Makes sfnt fonts in memory: tables in the order given, name records in the order given, sound unless told
// otherwise.
//   std::string font = SfntBuilder::CrossPlatform().WindowsName(4, u"Quill Sans").Build();
#ifndef QUILLMARK_TESTS_BUILDERS_SFNT_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_SFNT_BUILDER_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "builders/big_endian.h"

namespace quillmark {

class SfntBuilder {
 public:
  using TableList = std::vector<std::pair<std::string, std::string>>;  // tag and bytes

  SfntBuilder() = default;
  // Every table that a font for both systems needs, and no name record.
  static SfntBuilder CrossPlatform();

  SfntBuilder& Version(std::uint32_t version) {  // 0x00010000 unless set
    version_ = version;
    return *this;
  }
  // Adds a table, or replaces the one of that tag. A "name" table given here stands in place of the records.
  SfntBuilder& Table(const std::string& tag, const std::string& bytes);
  SfntBuilder& RemoveTable(const std::string& tag) {
    std::erase_if(tables_, [&](const auto& table) { return table.first == tag; });
    return *this;
  }

  SfntBuilder& Name(std::uint16_t platform, std::uint16_t encoding, std::uint16_t language, std::uint16_t id,
                    const std::string& bytes);
  SfntBuilder& MacName(std::uint16_t id, const std::string& mac_roman) {  // English
    return Name(1, 0, 0, id, mac_roman);
  }
  SfntBuilder& WindowsName(std::uint16_t id, std::u16string_view text, std::uint16_t language = 0x409) {
    return Name(3, 1, language, id, big_endian::Utf16(text));
  }
  SfntBuilder& UnicodeName(std::uint16_t id, std::u16string_view text) {
    return Name(0, 3, 0, id, big_endian::Utf16(text));
  }

  // The tables as Build lays them out, the name table made of the records among them.
  TableList Tables() const;
  std::uint32_t version() const { return version_; }
  std::string Build() const;

 private:
  struct Record {
    std::uint16_t platform, encoding, language, id;
    std::string bytes;
  };
  std::string NameTable() const;

  std::uint32_t version_ = 0x00010000;
  TableList tables_;
  std::vector<Record> names_;
};

// One 16-byte directory entry whose checksum is that of `bytes`.
std::string SfntDirectoryEntry(const std::string& tag, const std::string& bytes, std::size_t offset);
// Version, table count and the search fields.
std::string SfntHeader(std::uint32_t version, std::size_t table_count);

// Where the directory entry, or the bytes, of a table lie in a built font. A missing table throws.
std::size_t EntryPosition(const std::string& font, const std::string& tag);
std::size_t TablePosition(const std::string& font, const std::string& tag);

}  // namespace quillmark

#endif
