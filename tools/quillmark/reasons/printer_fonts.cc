#include "reasons/printer_fonts.h"

#include <filesystem>
#include <optional>
#include <vector>

#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

// More folders than all threads work in at the same time.
constexpr std::size_t kCacheLimit = 1024;

// The printer fonts that a family file names; none when it spends its budget, as no real file does.
std::vector<std::string> PrinterFontsOf(const FileSystem& files, const std::string& family) {
  OpenedFont opened(family, files);
  try {
    const ResourceFileHolder resources(AllocateResourceFile(opened.file, true));
    if (!FileHasFONDsInResourceFork(resources.get())) return {};
    return resources.get()->getPrinterFiles();
  } catch (const BudgetSpent&) {
    return {};
  }
}

PrinterFontFamilies::Families FamiliesIn(const FileSystem& files, const fs::path& folder) {
  PrinterFontFamilies::Families families;
  for (const std::string& name : files.NamesIn(folder)) {
    const std::string candidate = folder / name;
    if (!files.Status(candidate).regular) continue;
    for (const std::string& claimed : PrinterFontsOf(files, candidate)) {
      families.try_emplace(fs::path(claimed).filename(), candidate);
    }
  }
  return families;
}

// The family file in the same folder whose FOND names this printer font.
std::optional<std::string> FamilyOf(const OpenedFont& font, PrinterFontFamilies& families) {
  const fs::path printer_font = font.file.path();
  const bool has_folder = printer_font.has_parent_path();
  const auto here = families.InFolder(font.files, has_folder ? printer_font.parent_path().native() : ".");
  const auto found = here->find(printer_font.filename());
  if (found == here->end()) return std::nullopt;
  return has_folder ? found->second : fs::path(found->second).filename().native();
}

}  // namespace

std::shared_ptr<const PrinterFontFamilies::Families> PrinterFontFamilies::InFolder(
    const FileSystem& files, const std::string& folder) {
  // Held during the search, since threads that wait mostly want the same folder.
  const std::lock_guard lock(mutex_);
  if (const auto found = cache_.find(folder); found != cache_.end()) return found->second;
  auto families = std::make_shared<const Families>(FamiliesIn(files, folder));
  if (cache_.size() >= kCacheLimit) cache_.clear();
  cache_.emplace(folder, families);
  return families;
}

Explanation ExplainPrinterFont(const OpenedFont& font, const std::string& what,
                               PrinterFontFamilies& families) {
  const std::string reason = what + ", read only through the Macintosh font family file that names it: ";
  if (const auto family = FamilyOf(font, families))
    return {Outcome::kOther, reason + "give " + Printable(*family)};
  return {Outcome::kLonePrinterFont,
          reason + "none in this folder does; put the two together and give the family file"};
}

}  // namespace quillmark::tool
