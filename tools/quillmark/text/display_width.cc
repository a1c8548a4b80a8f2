#include "text/display_width.h"

#include <cwchar>
#include <vector>

#include "platform/text/text_encoding.h"
#include "text/utf8_character.h"

namespace quillmark::tool {
namespace {

// A character the C library knows no width of counts as one column.
std::size_t WidthOf(const Character& c) {
  const int width = ::wcwidth(static_cast<wchar_t>(c.code));
  return width < 0 ? 1 : static_cast<std::size_t>(width);
}

}  // namespace

std::size_t DisplayWidth(std::string_view text) {
  if (IsAscii(text)) return text.size();
  std::size_t width = 0;
  for (const Character& c : Characters(text)) width += WidthOf(c);
  return width;
}

std::string FitMiddle(const std::string& text, std::size_t width) {
  if (DisplayWidth(text) <= width) return text;
  if (width == 0) return {};
  const std::vector<Character> characters = Characters(text);
  std::size_t left = width - 1;
  std::size_t end = characters.size();  // a third for the end; marks are kept with their letters
  for (std::size_t room = left / 3; end > 0 && WidthOf(characters[end - 1]) <= room; --end) {
    room -= WidthOf(characters[end - 1]);
    left -= WidthOf(characters[end - 1]);
  }
  while (end < characters.size() && WidthOf(characters[end]) == 0) ++end;
  std::string fitted;
  for (std::size_t i = 0; i < end && WidthOf(characters[i]) <= left; ++i) {
    left -= WidthOf(characters[i]);
    fitted += characters[i].bytes;
  }
  fitted += kEllipsis;
  for (; end < characters.size(); ++end) fitted += characters[end].bytes;
  return fitted;
}

}  // namespace quillmark::tool
