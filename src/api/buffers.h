// Copies texts into the host's buffers: names, and whole stored forms, cut to fit.
// Tests: tests/api/queries_test.cc, stored_forms_test.cc; tests/c/contract.c.
#ifndef QUILLMARK_API_BUFFERS_H_
#define QUILLMARK_API_BUFFERS_H_

#include <cstdint>
#include <string_view>

namespace quillmark {

// At most bufferSize - 1 bytes and a NUL; nothing when bufferSize is below 1.
void CopyOut(std::string_view text, char* buffer, std::int32_t bufferSize);

// Takes a text piece by piece: as much as fits is copied into the host's buffer, all of it is counted.
class RepresentationBuffer {
 public:
  // `buffer` holds `size` bytes, NUL included.
  RepresentationBuffer(char* buffer, std::uint32_t size) : buffer_(buffer), size_(size) {}

  void Append(std::string_view piece);

  // Ends the text and stores the size that it needs, NUL included, as a 32-bit number. The status is
  // QM_STATUS_OUT_OF_RANGE when the text does not fit, else QM_STATUS_FAILED when `is_empty_array`.
  [[nodiscard]] std::int32_t Finish(std::uint32_t* length, bool is_empty_array);

 private:
  char* buffer_;
  std::uint32_t size_;
  std::uint64_t text_length_ = 0;
};

}  // namespace quillmark

#endif
