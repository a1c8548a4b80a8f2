#include "printer_fonts.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>

#include "reason.h"
#include "resource_faults.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

using Families = std::map<std::string, std::string>;  // from the name of a printer font to a family file

Families FamiliesIn(const fs::path& folder) {
  Families families;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    const std::string candidate = it->path().native();
    if (!IsRegularFile(candidate)) continue;
    const ResourceFileHolder file = OpenResources(candidate);
    if (!FileHasFONDsInResourceFork(file.get())) continue;
    for (const std::string& claimed : file.get()->getPrinterFiles()) {
      families.try_emplace(fs::path(claimed).filename(), candidate);
    }
  }
  return families;
}

// The family file in the same folder whose FOND names this printer font. A folder can hold thousands of
// printer fonts, so it is searched once for all of them that come in a row.
std::optional<std::string> FamilyOf(const fs::path& printer_font) {
  static std::mutex& mutex = *new std::mutex;
  const std::lock_guard lock(mutex);
  static fs::path& folder = *new fs::path;
  static Families& families = *new Families;
  const fs::path parent = printer_font.has_parent_path() ? printer_font.parent_path() : fs::path(".");
  if (parent != folder) {
    families = FamiliesIn(parent);
    folder = parent;
  }
  const auto found = families.find(printer_font.filename());
  if (found == families.end()) return std::nullopt;
  return printer_font.has_parent_path() ? found->second : fs::path(found->second).filename().native();
}

}  // namespace

Explanation ExplainPrinterFont(const std::string& path, const std::string& what) {
  const std::string reason = what + ", read only through the Macintosh font family file that names it: ";
  if (const auto family = FamilyOf(path)) return {Outcome::kOther, reason + "give " + ShownPath(*family)};
  return {Outcome::kLonePrinterFont,
          reason + "none in this folder does; put the two together and give the family file"};
}

}  // namespace quillmark::tool
