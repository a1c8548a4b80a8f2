#include "font_paths.h"

#include <algorithm>
#include <filesystem>

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

bool HoldsOtherFilesForks(const std::string& name) {
  return name == "__MACOSX" || name == ".AppleDouble" || name == "resource.frk";
}

// Folders below a folder, their depth bounded only by the paths the system takes: kept on a list, not on the
// stack.
void Walk(const fs::path& folder, std::vector<FontPath>& found) {
  std::vector<fs::path> pending{folder};
  while (!pending.empty()) {
    const fs::path here = std::move(pending.back());
    pending.pop_back();
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator it(here, fs::directory_options::skip_permission_denied, error), end;
         !error && it != end; it.increment(error)) {
      entries.push_back(*it);
    }
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
      return a.path().filename().native() < b.path().filename().native();
    });
    std::vector<fs::path> folders;
    for (const fs::directory_entry& entry : entries) {
      const std::string name = entry.path().filename().native();
      std::error_code ignored;
      if (!entry.is_symlink(ignored) && entry.is_directory(ignored)) {
        if (!HoldsOtherFilesForks(name)) folders.push_back(entry.path());
      } else if (name.rfind("._", 0) != 0 && entry.is_regular_file(ignored)) {
        found.push_back({entry.path().native(), false});
      }
    }
    pending.insert(pending.end(), folders.rbegin(), folders.rend());
  }
}

}  // namespace

std::vector<FontPath> ExpandPaths(const std::vector<std::string>& paths) {
  std::vector<FontPath> found;
  for (const std::string& path : paths) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
      Walk(path, found);
    } else {
      found.push_back({path, true});
    }
  }
  return found;
}

}  // namespace quillmark::tool
