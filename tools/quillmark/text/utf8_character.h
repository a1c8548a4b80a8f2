// Text taken apart into characters, whatever bytes it holds.
#ifndef QUILLMARK_TOOL_TEXT_UTF8_CHARACTER_H_
#define QUILLMARK_TOOL_TEXT_UTF8_CHARACTER_H_

#include <cstddef>
#include <string_view>

namespace quillmark::tool {

// The code of a byte that belongs to no character.
constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct Character {
  std::string_view bytes;
  char32_t code = kNoCharacter;
};

// The character that a text, which is not empty, begins with, or the one byte that begins none.
Character FirstCharacter(std::string_view text);

// Whether more bytes could make one character of a whole text.
bool MayBeCutCharacter(std::string_view text);

}  // namespace quillmark::tool

#endif
