#include "reason.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "analysis/collection.h"
#include "analysis/font_data.h"
#include "display_width.h"
#include "platform/cf_ref.h"
#include "platform/forks.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

ResourceFileHolder OpenResources(const std::string& path) {
  const CFRef<CFStringRef> name =
      Adopt(CFStringCreateWithCString(nullptr, path.c_str(), kCFStringEncodingUTF8));
  return ResourceFileHolder(name ? AllocateResourceFile(name.get(), true) : nullptr);
}

// The family file in the same folder whose FOND names this printer font.
std::optional<std::string> FamilyOf(const std::string& printer_font) {
  const fs::path folder = fs::path(printer_font).parent_path();
  std::error_code error;
  for (fs::directory_iterator it(folder.empty() ? fs::path(".") : folder, error), end; !error && it != end;
       it.increment(error)) {
    const fs::path candidate = folder / it->path().filename();
    if (candidate == printer_font || !IsRegularFile(candidate.native())) continue;
    const ResourceFileHolder file = OpenResources(candidate.native());
    if (!FileHasFONDsInResourceFork(file.get())) continue;
    for (const std::string& claimed : file.get()->getPrinterFiles()) {
      if (fs::path(claimed).filename() == fs::path(printer_font).filename()) return candidate.native();
    }
  }
  return std::nullopt;
}

bool IsLonePrinterFont(const std::string& path, QuillmarkResourceFile* resources) {
  if (FileHasPOSTsInResourceFork(resources) && !FileHasFONDsInResourceFork(resources)) return true;
  constexpr std::array kPrinterFonts = {kExtensionPs, kExtensionPfm, kExtensionPfb, kExtensionMmm};
  const FontExtension extension = fontTypeFromExtension(path.c_str());
  return std::find(kPrinterFonts.begin(), kPrinterFonts.end(), extension) != kPrinterFonts.end();
}

std::string LonePrinterFont(const std::string& path) {
  std::string reason = "a printer font: its outlines belong to a font family file";
  if (const auto family = FamilyOf(path)) return reason + ", here " + ShownPath(*family);
  return reason + ", and none in this folder names it";
}

}  // namespace

std::string ShownPath(const std::string& path) { return Printable(path); }

std::optional<std::string> WhyNotReadable(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) {
    return errno == ENOENT ? "no such file" : std::string(std::strerror(errno));
  }
  if (S_ISDIR(info.st_mode)) return "a folder";
  if (S_ISFIFO(info.st_mode)) return "a named pipe, not a file";
  if (S_ISSOCK(info.st_mode)) return "a socket, not a file";
  if (!S_ISREG(info.st_mode)) return "a device, not a file";
  if (!OpenDataFork(path)) return std::string("cannot be read: ") + std::strerror(errno);
  return std::nullopt;
}

std::string WhyNoFace(const std::string& path) {
  if (const auto reason = WhyNotReadable(path)) return *reason;
  const ResourceFileHolder resources = OpenResources(path);
  if (IsLonePrinterFont(path, resources.get())) return LonePrinterFont(path);
  if (TotalForkLength(path) == 0) return "empty, and no resource fork was found for it";
  if (resources.get() != nullptr) {
    return FileHasFONDsInResourceFork(resources.get())
               ? "a font family file with neither a readable outline font nor the name of a printer font"
               : "a resource file without fonts";
  }
  return "not a font that Quillmark reads";
}

}  // namespace quillmark::tool
