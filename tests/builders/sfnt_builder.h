// Makes sfnt fonts in memory: tables in the order given, name records in the order given, sound unless told
// otherwise.
//   std::string font = SfntBuilder::CrossPlatform().WindowsName(4, u"Quill Sans").Build();
#ifndef QUILLMARK_TESTS_BUILDERS_SFNT_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_SFNT_BUILDER_H_

#include <algorithm>
#include <bit>
#include <utility>

#include "builders/big_endian.h"
#include "platform/byte_reader.h"

namespace quillmark {

// Version, table count and the search fields.
inline std::string SfntHeader(std::uint32_t version, std::size_t table_count) {
  const std::size_t power = std::bit_floor(table_count);
  BigEndianWriter header;
  header.U32(version).U16(table_count).U16(power * 16).U16(std::bit_width(power) - std::size_t{1});
  return header.U16((table_count - power) * 16).bytes();
}
// One 16-byte directory entry whose checksum is that of `bytes`.
inline std::string SfntDirectoryEntry(const std::string& tag, const std::string& bytes, std::size_t offset) {
  const std::uint32_t sum = SumBigEndianWords(AsBytes(bytes));
  return BigEndianWriter().Text(tag).U32(sum).U32(offset).U32(bytes.size()).bytes();
}

class SfntBuilder {
 public:
  using TableList = std::vector<std::pair<std::string, std::string>>;  // tag and bytes

  // Every table that a font for both systems needs, and no name record.
  static SfntBuilder CrossPlatform() {
    using big_endian::U32;
    const auto zeros = [](std::size_t count) { return std::string(count, '\0'); };
    SfntBuilder builder;
    builder.tables_ = {{"cmap", zeros(4)},
                       {"glyf", "outline."},
                       {"head", U32(0x00010000) + zeros(8) + U32(0x5F0F3CF5) + zeros(38)},  // magic number
                       {"hhea", zeros(36)},
                       {"hmtx", zeros(4)},
                       {"loca", zeros(4)},
                       {"maxp", U32(0x00010000) + big_endian::U16(1) + zeros(26)},
                       {"name", ""},
                       {"post", U32(0x00030000) + zeros(28)}};
    return builder;
  }

  SfntBuilder& Version(std::uint32_t version) {  // 0x00010000 unless set
    version_ = version;
    return *this;
  }
  // Adds a table, or replaces the one of that tag. A "name" table given here stands in place of the records.
  SfntBuilder& Table(const std::string& tag, const std::string& bytes) {
    const auto found = std::find_if(tables_.begin(), tables_.end(), [&](auto& t) { return t.first == tag; });
    auto& table = found == tables_.end() ? tables_.emplace_back(tag, "") : *found;
    table.second = bytes;
    return *this;
  }
  SfntBuilder& RemoveTable(const std::string& tag) {
    std::erase_if(tables_, [&](const auto& table) { return table.first == tag; });
    return *this;
  }

  SfntBuilder& Name(std::uint16_t platform, std::uint16_t encoding, std::uint16_t language, std::uint16_t id,
                    const std::string& bytes) {
    if (name_records_.size() == 0) Table("name", "");
    name_records_.U16(platform).U16(encoding).U16(language).U16(id).U16(bytes.size()).U16(name_texts_.size());
    name_texts_ += bytes;
    return *this;
  }
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
  TableList Tables() const {
    TableList tables = tables_;
    BigEndianWriter names;
    names.U16(0).U16(name_records_.size() / 12).U16(6 + name_records_.size());
    names.Text(name_records_.bytes()).Text(name_texts_);
    for (auto& [tag, bytes] : tables) {
      if (tag == "name" && bytes.empty()) bytes = names.bytes();
    }
    return tables;
  }
  std::uint32_t version() const { return version_; }

  std::string Build() const {
    const TableList tables = Tables();
    std::string directory = SfntHeader(version_, tables.size());
    std::string data;
    for (const auto& [tag, bytes] : tables) {
      directory += SfntDirectoryEntry(tag, bytes, 12 + 16 * tables.size() + data.size());
      data += bytes;
      data.resize((data.size() + 3) / 4 * 4);
    }
    return directory + data;
  }

 private:
  std::uint32_t version_ = 0x00010000;
  TableList tables_;
  BigEndianWriter name_records_;
  std::string name_texts_;
};

// Where the directory entry, or the bytes, of a table lie in a built font. A missing table throws.
inline std::size_t EntryPosition(const std::string& font, const std::string& tag) {
  for (std::size_t at = 12; at + 16 <= font.size(); at += 16) {
    if (font.compare(at, 4, tag) == 0) return at;
  }
  throw std::out_of_range("no table " + tag);
}
inline std::size_t TablePosition(const std::string& font, const std::string& tag) {
  return U32At(AsBytes(font), EntryPosition(font, tag) + 8).value();
}

}  // namespace quillmark

#endif
