// Width of text in terminal columns: wide East Asian characters take two, combining marks none.
#ifndef QUILLMARK_TOOL_TEXT_DISPLAY_WIDTH_H_
#define QUILLMARK_TOOL_TEXT_DISPLAY_WIDTH_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmark::tool {

// Columns of printable text.
std::size_t DisplayWidth(std::string_view text);
inline constexpr const char* kEllipsis = "\xE2\x80\xA6";
// Cuts printable text to `width` columns. kEllipsis stands for its middle: names differ in their ends, too.
std::string FitMiddle(const std::string& text, std::size_t width);

}  // namespace quillmark::tool

#endif
