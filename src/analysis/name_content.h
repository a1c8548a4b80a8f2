// What the choice among a font's name records has to know of their texts, remembered for the texts of one
// file: the name tables of a collection's faces may overlap, so that thousands of faces have thousands of
// records each, all of the same few bytes. Tests: tests/analysis/name_content_test.cc.
#ifndef QUILLMARK_ANALYSIS_NAME_CONTENT_H_
#define QUILLMARK_ANALYSIS_NAME_CONTENT_H_

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "analysis/name_record.h"

namespace quillmark {

enum class NameContent : std::uint8_t { kNone, kAscii, kOther };  // kNone: empty, or invalid

// Of what DecodeNameText gives.
NameContent ContentOf(const NameRecord& record);

// The same, of the records of many fonts. For one thread at a time.
class NameContentMemory {
 public:
  // `file` is where bytes stay as they are for the life of the memory. Only texts in it are remembered: bytes
  // that were joined for one font make place for others.
  explicit NameContentMemory(Bytes file) : file_(file) {}

  NameContent ContentOf(const NameRecord& record);

 private:
  static constexpr std::size_t kMostTexts = 65536;  // twice what one table can have

  struct Place {
    const std::uint8_t* start;
    std::uint16_t length;
    NameEncoding encoding;
    bool operator==(const Place&) const = default;
  };
  struct PlaceHash {
    std::size_t operator()(const Place& place) const;
  };

  Bytes file_;
  std::unordered_map<Place, NameContent, PlaceHash> known_;
};

}  // namespace quillmark

#endif
