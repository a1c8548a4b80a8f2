// Four-character codes as text: resource types and sfnt tags.
#ifndef QUILLMARK_TOOL_TEXT_TYPE_TEXT_H_
#define QUILLMARK_TOOL_TEXT_TYPE_TEXT_H_

#include <cstdint>
#include <string>

namespace quillmark::tool {

// The code's four characters, made safe to show on a terminal.
std::string TypeText(std::uint32_t type);

}  // namespace quillmark::tool

#endif
