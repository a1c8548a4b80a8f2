// Width of text in terminal columns: wide East Asian characters take two, combining marks none.
#ifndef QUILLMARK_TOOL_DISPLAY_WIDTH_H_
#define QUILLMARK_TOOL_DISPLAY_WIDTH_H_

#include <cstddef>
#include <string>

namespace quillmark::tool {

// `text` as it may be shown: control characters, and bytes that are not UTF-8, become U+FFFD.
std::string Printable(const std::string& text);
// Columns of printable text.
std::size_t DisplayWidth(const std::string& text);
// Cuts printable text to `width` columns, ending in an ellipsis; a path keeps its end instead.
std::string FitEnd(const std::string& text, std::size_t width);
std::string FitStart(const std::string& text, std::size_t width);

}  // namespace quillmark::tool

#endif
