// OpenedFont: a font file that the tool looks into beside its creation, looked up once and read under a
// budget of its own; and the resource map of such a file.
#ifndef QUILLMARK_TOOL_REASONS_OPENED_FONT_H_
#define QUILLMARK_TOOL_REASONS_OPENED_FONT_H_

#include <optional>
#include <string>

#include "platform/files/file_system.h"
#include "platform/files/font_file.h"
#include "platform/resource_manager/resource_map.h"

namespace quillmark::tool {

// Reading `file` throws BudgetSpent when it takes more work than its size allows.
struct OpenedFont {
  explicit OpenedFont(const std::string& path, const FileSystem& system = SystemFiles())
      : files(system), access(system, &budget), file(access, path) {}

  const FileSystem& files;
  Budget budget;
  FileAccess access;
  FontFile file;
};

// The map of the resource fork; where there is none, that of the data fork.
struct FoundMap {
  std::optional<ResourceMap> map;
  bool is_data_fork = false;  // where the map lies
  // Why a fork is no map; nothing for one that is missing or was not looked at.
  std::optional<MapFault> resource_fork_fault, data_fork_fault;
};
FoundMap FindMap(FontFile& file);

}  // namespace quillmark::tool

#endif
