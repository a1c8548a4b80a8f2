// OpenedFont: a font file that the tool looks into beside its creation, looked up once and read under a
// budget of its own.
#ifndef QUILLMARK_TOOL_REASONS_OPENED_FONT_H_
#define QUILLMARK_TOOL_REASONS_OPENED_FONT_H_

#include <string>

#include "platform/files/file_system.h"
#include "platform/files/font_file.h"

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

}  // namespace quillmark::tool

#endif
