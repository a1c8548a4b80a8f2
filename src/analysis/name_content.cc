#include "analysis/name_content.h"

#include <functional>
#include <string>

#include "platform/text_encoding.h"

namespace quillmark {
namespace {

bool LiesIn(Bytes file, Bytes text) {
  if (file.empty() || text.empty()) return false;
  const std::less_equal<> before;  // orders any two pointers
  return before(&file.front(), &text.front()) && before(&text.back(), &file.back());
}

}  // namespace

NameContent ContentOf(const NameRecord& record) {
  if (EncodingOf(record) == NameEncoding::kSingleByte) {  // every byte becomes an ASCII one
    return U8At(record.text, 0).value_or(0) != 0 ? NameContent::kAscii : NameContent::kNone;
  }
  const std::string text = DecodeNameText(record);
  if (text.empty()) return NameContent::kNone;
  return IsAscii(text) ? NameContent::kAscii : NameContent::kOther;
}

NameContent NameContentMemory::ContentOf(const NameRecord& record) {
  const NameEncoding encoding = EncodingOf(record);
  if (encoding == NameEncoding::kSingleByte || !LiesIn(file_, record.text)) {
    return quillmark::ContentOf(record);
  }
  const Place place{record.text.data(), static_cast<std::uint16_t>(record.text.size()), encoding};
  if (const auto known = known_.find(place); known != known_.end()) return known->second;
  const NameContent content = quillmark::ContentOf(record);
  if (known_.size() == kMostTexts) known_.clear();
  known_.emplace(place, content);
  return content;
}

std::size_t NameContentMemory::PlaceHash::operator()(const Place& place) const {
  const std::size_t kind = std::size_t{place.length} * 4 + static_cast<std::size_t>(place.encoding);
  return std::hash<const void*>()(place.start) * 4096 + kind;
}

}  // namespace quillmark
