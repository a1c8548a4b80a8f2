#include "builders/collection_builder.h"

#include <map>

#include "builders/big_endian.h"

namespace quillmark {

using big_endian::U32;

std::string CollectionBuilder::Build() const {
  const std::size_t header_size = 12 + 4 * faces_.size();
  std::vector<std::size_t> directory_offsets;
  std::size_t data_start = header_size;
  for (const SfntBuilder& font : fonts_) {
    directory_offsets.push_back(data_start);
    data_start += 12 + 16 * font.Tables().size();
  }

  std::string directories;
  std::string data;
  std::map<std::string, std::size_t> stored;  // offset in `data`
  for (const SfntBuilder& font : fonts_) {
    const auto tables = font.Tables();
    directories += SfntHeader(font.version(), tables.size());
    for (const auto& [tag, bytes] : tables) {
      const auto [place, is_new] = stored.try_emplace(bytes, data.size());
      directories += SfntDirectoryEntry(tag, bytes, data_start + place->second);
      if (!is_new) continue;
      data += bytes;
      data.resize((data.size() + 3) / 4 * 4);
    }
  }

  std::string header = "ttcf" + U32(version_) + U32(static_cast<std::uint32_t>(faces_.size()));
  for (const std::size_t font : faces_) header += U32(static_cast<std::uint32_t>(directory_offsets[font]));
  return header + directories + data + trailer_;
}

}  // namespace quillmark
