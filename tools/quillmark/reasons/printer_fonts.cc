#include "reasons/printer_fonts.h"

#include <filesystem>
#include <vector>

#include "reasons/watched_files.h"
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

PrinterFontFamilies::Families FamiliesIn(const FileSystem& system, const fs::path& folder) {
  const WatchedFiles files(system);
  PrinterFontFamilies::Families families;
  for (const std::string& name : files.NamesIn(folder)) {
    const std::string candidate = folder / name;
    if (!files.Status(candidate).regular) continue;
    for (const std::string& claimed : PrinterFontsOf(files, candidate)) {
      families.files.try_emplace(fs::path(claimed).filename(), candidate);
    }
  }
  families.unread = files.WhyUnread({});
  families.may_pass = files.failure() && IsShortage(files.failure()->error);
  return families;
}

}  // namespace

std::shared_ptr<const PrinterFontFamilies::Families> PrinterFontFamilies::InFolder(
    const FileSystem& files, const std::string& folder) {
  // Held during the search, since threads that wait mostly want the same folder.
  const std::lock_guard lock(mutex_);
  if (const auto found = cache_.find(folder); found != cache_.end()) return found->second;
  auto families = std::make_shared<const Families>(FamiliesIn(files, folder));
  if (families->may_pass) return families;
  if (cache_.size() >= kCacheLimit) cache_.clear();
  cache_.emplace(folder, families);
  return families;
}

Explanation ExplainPrinterFont(const OpenedFont& font, const std::string& what,
                               PrinterFontFamilies& families) {
  const std::string reason = what + ", read only through the Macintosh font family file that names it: ";
  const fs::path printer_font = font.file.path();
  const bool has_folder = printer_font.has_parent_path();
  const auto here = families.InFolder(font.files, has_folder ? printer_font.parent_path().native() : ".");
  Explanation explanation;
  explanation.depends_on_folder = true;
  if (const auto found = here->files.find(printer_font.filename()); found != here->files.end()) {
    const fs::path family = found->second;
    explanation.outcome = Outcome::kOther;
    explanation.reason = reason + "give " + Printable(has_folder ? family : family.filename());
    return explanation;
  }
  explanation.outcome = Outcome::kLonePrinterFont;
  explanation.reason =
      reason + (here->unread.empty()
                    ? "none in this folder does; put the two together and give the family file"
                    : "none in this folder does that can be read, and " + here->unread);
  explanation.may_pass = here->may_pass;
  return explanation;
}

}  // namespace quillmark::tool
