#include "text/type_text.h"

#include "platform/text/text_encoding.h"
#include "text/printable.h"

namespace quillmark::tool {

std::string TypeText(std::uint32_t type) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>((type >> shift) & 0xFFu);
  return Printable(MacRomanToUtf8(bytes));
}

}  // namespace quillmark::tool
