#include "builders/sfnt_builder.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

#include "builders/big_endian.h"
#include "platform/byte_reader.h"

namespace quillmark {

using big_endian::U16;
using big_endian::U32;

SfntBuilder SfntBuilder::CrossPlatform() {
  std::string head(54, '\0');
  big_endian::Set32(head, 0, 0x00010000);
  big_endian::Set32(head, 12, 0x5F0F3CF5);  // magic number
  SfntBuilder builder;
  builder.Table("cmap", U32(0))
      .Table("glyf", "outline.")
      .Table("head", head)
      .Table("hhea", std::string(36, '\0'))
      .Table("hmtx", std::string(4, '\0'))
      .Table("loca", std::string(4, '\0'))
      .Table("maxp", U32(0x00010000) + U16(1) + std::string(26, '\0'))
      .Table("name", "")
      .Table("post", U32(0x00030000) + std::string(28, '\0'));
  return builder;
}

SfntBuilder& SfntBuilder::Table(const std::string& tag, const std::string& bytes) {
  const auto found =
      std::find_if(tables_.begin(), tables_.end(), [&](const auto& table) { return table.first == tag; });
  if (found != tables_.end()) {
    found->second = bytes;
  } else {
    tables_.emplace_back(tag, bytes);
  }
  return *this;
}

SfntBuilder& SfntBuilder::Name(std::uint16_t platform, std::uint16_t encoding, std::uint16_t language,
                               std::uint16_t id, const std::string& bytes) {
  if (names_.empty()) Table("name", "");
  names_.push_back({platform, encoding, language, id, bytes});
  return *this;
}

std::string SfntBuilder::NameTable() const {
  std::string records;
  std::string strings;
  for (const Record& name : names_) {
    records += U16(name.platform) + U16(name.encoding) + U16(name.language) + U16(name.id) +
               U16(static_cast<std::uint32_t>(name.bytes.size())) +
               U16(static_cast<std::uint32_t>(strings.size()));
    strings += name.bytes;
  }
  return U16(0) + U16(static_cast<std::uint32_t>(names_.size())) +
         U16(static_cast<std::uint32_t>(6 + records.size())) + records + strings;
}

SfntBuilder::TableList SfntBuilder::Tables() const {
  TableList tables = tables_;
  for (auto& [tag, bytes] : tables) {
    if (tag == "name" && bytes.empty()) bytes = NameTable();
  }
  return tables;
}

std::string SfntBuilder::Build() const {
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

std::string SfntDirectoryEntry(const std::string& tag, const std::string& bytes, std::size_t offset) {
  return tag + U32(SumBigEndianWords(AsBytes(bytes))) + U32(static_cast<std::uint32_t>(offset)) +
         U32(static_cast<std::uint32_t>(bytes.size()));
}

std::string SfntHeader(std::uint32_t version, std::size_t table_count) {
  const auto count = static_cast<std::uint32_t>(table_count);
  const std::uint32_t power = std::bit_floor(count);
  return U32(version) + U16(count) + U16(power * 16) + U16(std::bit_width(power) - 1) +
         U16((count - power) * 16);
}

std::size_t EntryPosition(const std::string& font, const std::string& tag) {
  for (std::size_t at = 12; at + 16 <= font.size(); at += 16) {
    if (font.compare(at, 4, tag) == 0) return at;
  }
  throw std::out_of_range("no table " + tag);
}

std::size_t TablePosition(const std::string& font, const std::string& tag) {
  return U32At(AsBytes(font), EntryPosition(font, tag) + 8).value();
}

}  // namespace quillmark
