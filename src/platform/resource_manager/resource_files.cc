#include "platform/resource_manager/resource_files.h"

#include <algorithm>

namespace quillmark {

std::vector<ResourceFiles::Opened>::iterator ResourceFiles::Find(ResFileRefNum number) {
  return std::find_if(chain.begin(), chain.end(),
                      [&](const Opened& opened) { return opened.number == number; });
}

OpenResourceFile* ResourceFiles::Current() {
  const auto found = Find(current);
  return found == chain.end() ? nullptr : found->file.get();
}

ResourceFiles& ThreadResourceFiles() {
  thread_local ResourceFiles files;
  return files;
}

}  // namespace quillmark
