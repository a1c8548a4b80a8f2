// What the reader and the writer of property-list text share.
#ifndef QUILLMARK_PLATFORM_PROPERTY_LIST_FORMAT_H_
#define QUILLMARK_PLATFORM_PROPERTY_LIST_FORMAT_H_

#include <cstddef>

namespace quillmark::cf {

// Arrays and dictionaries inside one another, the outermost counted; an empty one inside the last is allowed
// too. It keeps the depth of a tree, and so the stack that writing or releasing one takes, within bounds.
inline constexpr std::size_t kMostLevels = 512;

}  // namespace quillmark::cf

#endif
