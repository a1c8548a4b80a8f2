// Writes a changed resource map back to the fork it was read from, whatever carries that fork; the fork is
// replaced whole or not at all. Tests: tests/resources/resource_file_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_FORK_WRITER_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_FORK_WRITER_H_

#include <optional>
#include <string>

#include "platform/files/font_file.h"
#include "platform/resource_manager/resource_map.h"

namespace quillmark {

// What a map was read from.
struct MapOrigin {
  std::string path;                    // the file that the fork belongs to
  std::optional<ForkCarrier> carrier;  // of its resource fork; nothing for its data fork
  std::string where;                   // as in ResourceForkLocation; unused for the data fork
};

// Whether this process may write the carrying file. A fork that the file system itself shows cannot be
// replaced by renaming, so it is never writable.
bool IsWritable(const MapOrigin& origin);
[[nodiscard]] bool WriteMap(const MapOrigin& origin, const ResourceMap& map);

}  // namespace quillmark

#endif
