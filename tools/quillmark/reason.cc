#include "reason.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

#include "analysis/collection.h"
#include "analysis/font_data.h"
#include "collection_faults.h"
#include "display_width.h"
#include "fork_places.h"
#include "gzip_start.h"
#include "known_formats.h"
#include "platform/text_encoding.h"
#include "printer_fonts.h"
#include "resource_faults.h"
#include "sfnt_faults.h"

namespace quillmark::tool {
namespace {

constexpr const char* kUnreadable = "cannot be read";  // or not any more

// With its dot, as the library looks at it: empty when it is none that the library knows.
std::string KnownExtension(const std::string& path) {
  if (fontTypeFromExtension(path.c_str()) == kExtensionOther) return {};
  return Printable(path.substr(path.rfind('.')));
}

// For a file whose name promises a font that is read.
std::string InSpiteOfExtension(const std::string& path) {
  switch (fontTypeFromExtension(path.c_str())) {
    case kExtensionTtf:
    case kExtensionOtf:
    case kExtensionTtc:
    case kExtensionDfont:
      return " in spite of its extension " + KnownExtension(path);
    default:
      return {};
  }
}

std::string WithAdvice(const std::string& reason, std::string_view advice) {
  return advice.empty() ? reason : reason + ": " + std::string(advice);
}

// The first bytes of a file, with their memory.
class OpenedFile {
 public:
  explicit OpenedFile(RegularFile file) : file_(std::move(file)) { read_ = file_.ReadAt(0, block_); }
  FileStart start() const { return {Bytes(block_).first(read_), file_.size()}; }
  const RegularFile& file() const { return file_; }

 private:
  RegularFile file_;
  std::array<std::uint8_t, kFileStartSize> block_ = {};
  std::size_t read_ = 0;
};

std::string Describe(const std::string& path, const KnownFormat& format, const std::string& name) {
  if (format.use == FormatUse::kPrinterFont) return LonePrinterFont(path, name);
  const std::string whole = name + InSpiteOfExtension(path);
  return format.use == FormatUse::kNoFont
             ? WithAdvice(whole + ", not a font", format.advice)
             : WithAdvice(whole + ", which Quillmark does not read", format.advice);
}

// What the file is when its first bytes tell a format that is not read.
std::optional<std::string> WhyOtherFormat(const std::string& path, const FileStart& start) {
  const KnownFormat* format = RecogniseFormat(start);
  if (format == nullptr) return std::nullopt;
  std::string name(format->name);
  if (IsGzip(*format)) {
    const std::vector<std::uint8_t> plain = ReadGzipStart(start.bytes);
    const KnownFormat* inside = RecogniseFormat({plain, 0});
    if (inside != nullptr && inside->use == FormatUse::kFont) {
      return Describe(path, *inside, std::string(inside->name) + ", compressed with gzip");
    }
  }
  return Describe(path, *format, name);
}

std::string WhyNoCollectionFace(const std::string& path) {
  TrueTypeCollectionFont collection(path);
  std::string fault = WhyNoList(path, collection);
  if (fault.empty()) return "a collection of which no face can be read; " + LostFaces(path, collection);
  const auto file = RegularFile::Open(path);
  if (!file || file->size() == 0 || IsCollection(path)) return fault;
  const OpenedFile opened(*file);
  if (const auto kind = SfntKind(opened.start().bytes)) {
    return std::string(*kind) + InSpiteOfExtension(path) + ": rename it so that it ends in " +
           (*kind == "an OpenType font" ? ".otf" : ".ttf");
  }
  return WhyOtherFormat(path, opened.start())
      .value_or(fault + ", which its extension .ttc makes Quillmark expect");
}

// The extension is all that keeps this font from being read, or it is damaged.
std::string WhyNoSfntFace(const std::string& path, const RegularFile& file, std::string_view kind) {
  const SfntData font(file, static_cast<std::uint32_t>(file.size()));
  const std::string name(kind);
  if (const auto fault = NameFault(font, "the file")) return name + " that is damaged: " + *fault;
  const std::string extension = KnownExtension(path);
  return name +
         (extension.empty() ? ", which is not read without its extension"
                            : ", which is not read under the extension " + extension) +
         ": rename it so that it ends in " + (kind == "an OpenType font" ? ".otf" : ".ttf");
}

bool IsText(Bytes start) {
  return std::all_of(start.begin(), start.end(),
                     [](std::uint8_t c) { return c >= 0x20 || (c >= '\t' && c <= '\r'); });
}

std::string WhyUnknown(const std::string& path, const FileStart& start) {
  switch (fontTypeFromExtension(path.c_str())) {
    case kExtensionPs:
    case kExtensionPfm:
    case kExtensionPfb:
    case kExtensionMmm:
      return LonePrinterFont(path, "a printer font by its extension " + KnownExtension(path));
    case kExtensionFot:
    case kExtensionFnt:
    case kExtensionFon:
    case kExtensionInf:
      return "not read, as no file with the extension " + KnownExtension(path) + " is";
    default:
      return std::string(IsText(start.bytes) ? "a text file" : "unknown data") + InSpiteOfExtension(path) +
             ", not a font that Quillmark reads";
  }
}

// Of a file whose fonts are looked for in its data fork, which is not empty.
std::string WhyNoDataForkFace(const std::string& path, const RegularFile& file,
                              QuillmarkResourceFile* resources) {
  if (file.size() >= std::numeric_limits<std::uint32_t>::max())
    return "4 GiB or larger, more than a font can be";
  const OpenedFile opened(file);
  const FileStart start = opened.start();
  if (start.bytes.empty()) return kUnreadable;
  if (StartsWith(start.bytes, "ttcf")) {
    return "a TrueType collection" + InSpiteOfExtension(path) +
           ", and collections are read by the extension .ttc only: rename it so that it ends in .ttc";
  }
  if (const auto kind = SfntKind(start.bytes)) return WhyNoSfntFace(path, file, *kind);
  if (resources != nullptr && resources->isDataFork()) return WhyNoFonts(*resources);
  if (auto reason = WhyOtherFormat(path, start)) return *std::move(reason);
  // A map's data mostly begin behind 256 bytes.
  constexpr std::uint32_t kUsualDataStart = 256;
  const bool is_map =
      fontTypeFromExtension(path.c_str()) == kExtensionDfont || U32At(start.bytes, 0) == kUsualDataStart;
  if (is_map && resources == nullptr) {
    if (const auto fault = MapFault(Fork(file, 0, file.size()))) return "a damaged resource file: " + *fault;
  }
  return WhyUnknown(path, start);
}

std::string WhyNoForkFace(const std::string& path, QuillmarkResourceFile* resources) {
  if (resources != nullptr) return WhyNoFonts(*resources);
  const auto found = FindResourceFork(path);
  const auto fault = found ? MapFault(found->fork) : std::nullopt;
  if (fault)
    return "a font file whose resource fork, in " + ShownPath(found->where) + ", is damaged: " + *fault;
  return NoForkAnywhere(path);
}

// Resource files are opened by paths that are UTF-8 only.
bool HidesResources(const std::string& path) {
  if (IsValidUtf8(path)) return false;
  if (FindResourceFork(path)) return true;
  const auto data = OpenDataFork(path);
  return data && !MapFault(*data);
}

}  // namespace

std::string ShownPath(const std::string& path) { return Printable(path); }

std::optional<std::string> WhyNotReadable(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) {
    switch (errno) {
      case ENOENT:
        return "no such file";
      case ENOTDIR:
        return "no such file, for a part of its path is no folder";
      case EACCES:
        return "no permission to look into its folder";
      default:
        return std::strerror(errno);
    }
  }
  if (S_ISDIR(info.st_mode)) return "a folder, not a file";
  if (S_ISFIFO(info.st_mode)) return "a named pipe, not a file";
  if (S_ISSOCK(info.st_mode)) return "a socket, not a file";
  if (!S_ISREG(info.st_mode)) return "a device, not a file";
  if (OpenDataFork(path)) return std::nullopt;
  return errno == EACCES ? "no permission to read it"
                         : std::string(kUnreadable) + ": " + std::strerror(errno);
}

bool CanBeLookedAt(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && (!S_ISREG(info.st_mode) || OpenDataFork(path));
}

std::string WhyNoFace(const std::string& path) {
  if (const auto reason = WhyNotReadable(path)) return *reason;
  if (const auto reason = WhySidecar(path)) return *reason;
  if (fontTypeFromExtension(path.c_str()) == kExtensionTtc) return WhyNoCollectionFace(path);
  const ResourceFileHolder resources = OpenResources(path);
  if (FileHasFONDsInResourceFork(resources.get())) return WhyNoFamilyFace(*resources.get());
  if (FileHasPOSTsInResourceFork(resources.get())) return LonePrinterFont(path, "a printer font");
  if (HidesResources(path))
    return "its fonts are resources, and these are read by paths in UTF-8 only: rename it";
  if (path.size() >= sizeof TFontData::pathBytes) {
    return "its path is too long: only " + std::to_string(sizeof TFontData::pathBytes - 1) +
           " bytes of a path are looked at";
  }
  const auto file = RegularFile::Open(path);
  if (!file) return kUnreadable;
  return file->size() == 0 ? WhyNoForkFace(path, resources.get())
                           : WhyNoDataForkFace(path, *file, resources.get());
}

}  // namespace quillmark::tool
