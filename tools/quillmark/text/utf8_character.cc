#include "text/utf8_character.h"

#include <algorithm>

#include "platform/text/text_encoding.h"

namespace quillmark::tool {
namespace {

unsigned Value(char byte) { return static_cast<unsigned char>(byte); }

// By what the first byte claims.
std::size_t LengthFrom(char lead) {
  if (Value(lead) < 0xC0) return 1;
  if (Value(lead) < 0xE0) return 2;
  return Value(lead) < 0xF0 ? 3 : 4;
}

}  // namespace

Character FirstCharacter(std::string_view text) {
  const std::string_view bytes = text.substr(0, LengthFrom(text[0]));
  if (!IsValidUtf8(bytes)) return {text.substr(0, 1), kNoCharacter};
  unsigned code = bytes.size() == 1 ? Value(text[0]) : Value(text[0]) & (0xFFu >> (bytes.size() + 1));
  for (const char c : bytes.substr(1)) code = code * 64 + (Value(c) & 0x3Fu);
  return {bytes, code};
}

std::vector<Character> Characters(std::string_view text) {
  std::vector<Character> characters;
  while (!text.empty()) {
    characters.push_back(FirstCharacter(text));
    text.remove_prefix(characters.back().bytes.size());
  }
  return characters;
}

bool MayBeCutCharacter(std::string_view text) {
  return !text.empty() && text.size() < LengthFrom(text[0]) &&
         std::all_of(text.begin() + 1, text.end(), [](char c) { return (Value(c) & 0xC0u) == 0x80; });
}

}  // namespace quillmark::tool
