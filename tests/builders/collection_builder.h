// Makes collections in memory out of the fonts that SfntBuilder describes. Tables of equal bytes are stored
// once and shared.
#ifndef QUILLMARK_TESTS_BUILDERS_COLLECTION_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_COLLECTION_BUILDER_H_

#include <map>

#include "builders/sfnt_builder.h"

namespace quillmark {

class CollectionBuilder {
 public:
  CollectionBuilder& Face(const SfntBuilder& font) {
    faces_.push_back(fonts_.size());
    fonts_.push_back(font);
    return *this;
  }
  // One more face with the table directory of an earlier one (from 0).
  CollectionBuilder& SameFaceAs(std::size_t face) {
    faces_.push_back(faces_.at(face));
    return *this;
  }
  // Bytes behind the last table.
  CollectionBuilder& Trailer(const std::string& bytes) {
    trailer_ = bytes;
    return *this;
  }

  std::string Build() const {
    const std::size_t directories_start = 12 + 4 * faces_.size();
    std::size_t data_start = directories_start;
    for (const SfntBuilder& font : fonts_) data_start += 12 + 16 * font.Tables().size();

    std::vector<std::size_t> directory_offsets;
    std::string directories;
    std::string data;
    std::map<std::string, std::size_t> stored;  // offset in `data`
    for (const SfntBuilder& font : fonts_) {
      const auto tables = font.Tables();
      directory_offsets.push_back(directories_start + directories.size());
      directories += SfntHeader(font.version(), tables.size());
      for (const auto& [tag, bytes] : tables) {
        const auto [place, is_new] = stored.try_emplace(bytes, data.size());
        directories += SfntDirectoryEntry(tag, bytes, data_start + place->second);
        if (!is_new) continue;
        data += bytes;
        data.resize((data.size() + 3) / 4 * 4);
      }
    }
    std::string header = "ttcf" + big_endian::U32(0x00010000) + big_endian::U32(faces_.size());
    for (const std::size_t font : faces_) header += big_endian::U32(directory_offsets[font]);
    return header + directories + data + trailer_;
  }

 private:
  std::vector<SfntBuilder> fonts_;
  std::vector<std::size_t> faces_;  // index into fonts_
  std::string trailer_;
};

}  // namespace quillmark

#endif
