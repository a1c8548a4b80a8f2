// ResourceFiles: the Resource Manager's state of one thread: open files, the current one, the load switch,
// the error. Tests: tests/platform/resource_manager_test.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_FILES_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_FILES_H_

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "platform/resource_manager/open_resource_file.h"
#include "platform/resource_manager/resource_types.h"

namespace quillmark {

struct ResourceFiles {
  struct Opened {
    ResFileRefNum number;
    std::unique_ptr<OpenResourceFile> file;
  };
  std::vector<Opened> chain;  // in the order they were opened
  ResFileRefNum current = 0;  // 0: none, the end of the chain
  ResFileRefNum last_number = 0;
  bool load = true;
  OSErr error = noErr;
  std::optional<MapFault> map_fault;  // why the fork that was opened last is no map

  // Position in the chain of a number; the end when it is not open.
  std::vector<Opened>::iterator Find(ResFileRefNum number) {
    return std::ranges::find(chain, number, &Opened::number);
  }
  // Null when there is none.
  OpenResourceFile* Current() {
    const auto found = Find(current);
    return found == chain.end() ? nullptr : found->file.get();
  }
};

inline ResourceFiles& ThreadResourceFiles() {
  thread_local ResourceFiles files;
  return files;
}

}  // namespace quillmark

#endif
