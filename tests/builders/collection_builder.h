// Makes collections in memory out of the fonts that SfntBuilder describes. Tables of equal bytes are stored
// once and shared.
#ifndef QUILLMARK_TESTS_BUILDERS_COLLECTION_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_COLLECTION_BUILDER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "builders/sfnt_builder.h"

namespace quillmark {

class CollectionBuilder {
 public:
  CollectionBuilder& Version(std::uint32_t version) {  // 0x00010000 unless set
    version_ = version;
    return *this;
  }
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
  std::string Build() const;

 private:
  std::uint32_t version_ = 0x00010000;
  std::vector<SfntBuilder> fonts_;
  std::vector<std::size_t> faces_;  // index into fonts_
  std::string trailer_;
};

}  // namespace quillmark

#endif
