// Splits text into UTF-8 characters and invalid bytes.
#ifndef QUILLMARK_TOOL_TEXT_UTF8_CHARACTER_H_
#define QUILLMARK_TOOL_TEXT_UTF8_CHARACTER_H_

#include <string_view>
#include <vector>

namespace quillmark::tool {

// The code of a byte that belongs to no character.
constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct Character {
  std::string_view bytes;
  char32_t code = kNoCharacter;
};

// The first character of `text`, which is not empty, or its first byte when that begins no valid one.
Character FirstCharacter(std::string_view text);

// All of a text, one after another.
std::vector<Character> Characters(std::string_view text);

// Whether the whole text could be the beginning of one character.
bool MayBeCutCharacter(std::string_view text);

}  // namespace quillmark::tool

#endif
