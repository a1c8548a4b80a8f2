// Four-character codes as text: resource types and sfnt tags.
#ifndef QUILLMARK_TOOL_TEXT_TYPE_TEXT_H_
#define QUILLMARK_TOOL_TEXT_TYPE_TEXT_H_

#include <cstdint>
#include <string>

namespace quillmark::tool {

// As it may be shown on a terminal.
std::string TypeText(std::uint32_t type);

}  // namespace quillmark::tool

#endif
