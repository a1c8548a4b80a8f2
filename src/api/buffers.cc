#include "api/buffers.h"

#include <algorithm>

#include "quillmark/quillmark.h"

namespace quillmark {

void CopyOut(std::string_view text, char* buffer, std::int32_t bufferSize) {
  if (bufferSize < 1) return;
  const std::size_t copied = text.copy(buffer, static_cast<std::size_t>(bufferSize) - 1);
  buffer[copied] = '\0';
}

void RepresentationBuffer::Append(std::string_view piece) {
  if (text_length_ < size_) piece.copy(buffer_ + text_length_, size_ - 1 - text_length_);
  text_length_ += piece.size();
}

std::int32_t RepresentationBuffer::Finish(std::uint32_t* length, bool is_empty_array) {
  const bool fits = text_length_ < size_;
  if (size_ > 0) buffer_[std::min<std::uint64_t>(text_length_, size_ - 1)] = '\0';
  *length = static_cast<std::uint32_t>(text_length_ + 1);
  if (!fits) return QM_STATUS_OUT_OF_RANGE;
  return is_empty_array ? QM_STATUS_FAILED : QM_STATUS_OK;
}

}  // namespace quillmark
