// What the reader and the writers of property-list text share.
#ifndef QUILLMARK_PLATFORM_PROPERTY_LIST_PROPERTY_LIST_FORMAT_H_
#define QUILLMARK_PLATFORM_PROPERTY_LIST_PROPERTY_LIST_FORMAT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmark::cf {

// Arrays and dictionaries inside one another, the outermost counted; an empty one inside the last is allowed
// too. It keeps the depth of a tree, and so the stack that writing or releasing one takes, within bounds.
inline constexpr std::size_t kMostLevels = 512;

// The text around the one element of every list.
inline constexpr std::string_view kTextHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
inline constexpr std::string_view kTextTail = "</plist>\n";

// Appends the content of a string element: nothing is escaped but the ampersand and the two angle brackets.
void AppendEscaped(std::string& text, std::string_view added);

}  // namespace quillmark::cf

#endif
