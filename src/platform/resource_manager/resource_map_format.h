// Sizes and special values of a resource fork's structures, for what reads and what writes them. Layout:
// "Inside Macintosh: More Macintosh Toolbox", Resource Manager.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_MAP_FORMAT_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_MAP_FORMAT_H_

#include <cstddef>
#include <cstdint>

namespace quillmark::resource_format {

inline constexpr std::size_t kForkHeaderSize = 16;  // start of data, of map, length of data, of map
inline constexpr std::size_t kMapHeaderSize = 28;   // copy of the fork header, bookkeeping, list offsets
inline constexpr std::size_t kBookkeepingSize = 8;  // room for a handle and a file number; map attributes
inline constexpr std::size_t kMapAttributesOffset = 22;
inline constexpr std::size_t kTypeListOffset = 24;
inline constexpr std::size_t kNameListOffset = 26;
inline constexpr std::size_t kCountSize = 2;  // counts are stored minus 1: 0xFFFF means none
inline constexpr std::size_t kTypeSize = 8;   // type, count, offset of its list from the type list
inline constexpr std::size_t kReferenceSize =
    12;  // ID, name offset, attributes, data offset, room for a handle
inline constexpr std::uint32_t kLengthWordSize = 4;  // before a resource's data
inline constexpr std::uint16_t kNoName = 0xFFFF;

}  // namespace quillmark::resource_format

#endif
