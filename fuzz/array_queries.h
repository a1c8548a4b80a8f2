// Asks an array everything that the exported functions give, in small and large buffers.
#ifndef QUILLMARK_FUZZ_ARRAY_QUERIES_H_
#define QUILLMARK_FUZZ_ARRAY_QUERIES_H_

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "builders/exported_calls.h"

namespace quillmark {

inline constexpr std::uint32_t kMaxFaces = 16;  // of one input

inline void AskEverything(const QM_FontArray* array) {
  std::uint32_t count = 0;
  if (QM_GetFontCount(array, &count) != QM_STATUS_OK || count == 0) std::abort();
  for (std::uint32_t face = 0; face < count && face < kMaxFaces; ++face) {
    for (const auto getter : kTextGetters) {
      char large[4096];
      char small[5];
      if (getter(array, face, large, sizeof(large)) != QM_STATUS_OK) continue;
      if (getter(array, face, small, sizeof(small)) != QM_STATUS_OK) std::abort();
      if (std::strncmp(large, small, sizeof(small) - 1) != 0) std::abort();
    }
    for (const auto getter : kNumberGetters) {
      std::uint32_t value = 0;
      (void)getter(array, face, &value);
    }
  }
}

// The whole text of a representation, after a look whether a short buffer gets its beginning.
inline std::string Represent(FormWriter writer, const QM_FontArray* array) {
  char beginning[64];
  std::uint32_t length = sizeof(beginning);
  if (writer(array, beginning, &length) != QM_STATUS_OUT_OF_RANGE) std::abort();
  std::string text(length, '?');
  if (writer(array, text.data(), &length) != QM_STATUS_OK || length != text.size()) std::abort();
  text.pop_back();
  if (text.compare(0, sizeof(beginning) - 1, beginning) != 0) std::abort();
  return text;
}

}  // namespace quillmark

#endif
