#include "reasons/reason.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <variant>

#include "analysis/font_extension.h"
#include "analysis/font_kind.h"
#include "analysis/name_table.h"
#include "platform/text/text_encoding.h"
#include "reasons/fault_words.h"
#include "reasons/fork_places.h"
#include "reasons/gzip_start.h"
#include "reasons/known_formats.h"
#include "reasons/lost_faces.h"
#include "reasons/printer_fonts.h"
#include "reasons/resource_faults.h"
#include "reasons/watched_files.h"
#include "resources/resource_access.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr const char* kUnreadable = "cannot be read";  // also for a file that could be read before

// With its dot, as the library looks at it: empty when it is none that the library knows.
std::string KnownExtension(const std::string& path) {
  if (fontTypeFromExtension(path.c_str()) == kExtensionOther) return {};
  return Printable(path.substr(path.rfind('.')));
}

// Whether the name promises a font that is read.
bool IsNamedAsFont(const std::string& path) {
  switch (fontTypeFromExtension(path.c_str())) {
    case kExtensionTtf:
    case kExtensionOtf:
    case kExtensionTtc:
    case kExtensionDfont:
      return true;
    default:
      return false;
  }
}

std::string InSpiteOfExtension(const std::string& path) {
  return IsNamedAsFont(path) ? " in spite of its extension " + KnownExtension(path) : "";
}

// For a file that holds no font: it counts as damaged only when its name promises one.
Explanation NoFont(const std::string& path, std::string reason) {
  return {IsNamedAsFont(path) ? Outcome::kDamaged : Outcome::kOther, std::move(reason)};
}

// For a file that shows no fault when it is examined a second time.
Explanation ReadOnSecondTry() {
  return {Outcome::kUnreadable,
          "could not be read whole: memory or open files ran short, or it changed meanwhile"};
}

bool IsReadAsSfnt(const std::string& path) {
  const FontExtension extension = fontTypeFromExtension(path.c_str());
  return extension == kExtensionTtf || extension == kExtensionOtf;
}

std::string Faces(std::size_t count) { return std::to_string(count) + (count == 1 ? " face" : " faces"); }

std::string WithAdvice(const std::string& reason, std::string_view advice) {
  return advice.empty() ? reason : reason + ": " + std::string(advice);
}

// Owns the first bytes of a file.
class OpenedStart {
 public:
  explicit OpenedStart(RegularFile file) : file_(std::move(file)) { read_ = file_.ReadAt(0, block_); }
  FileStart start() const { return {Bytes(block_).first(read_), file_.size()}; }
  const RegularFile& file() const { return file_; }

 private:
  RegularFile file_;
  std::array<std::uint8_t, kFileStartSize> block_ = {};
  std::size_t read_ = 0;
};

Explanation Describe(const std::string& path, const KnownFormat& format, const std::string& name,
                     PrinterFontFamilies& families) {
  if (format.use == FormatUse::kPrinterFont) return ExplainPrinterFont(path, name, families);
  const std::string whole = name + InSpiteOfExtension(path);
  if (format.use == FormatUse::kNoFont)
    return NoFont(path, WithAdvice(whole + ", not a font", format.advice));
  return {Outcome::kOther, WithAdvice(whole + ", which Quillmark does not read", format.advice)};
}

// Explains a file whose first bytes are those of a format that is not read.
std::optional<Explanation> ExplainOtherFormat(const std::string& path, const FileStart& start,
                                              PrinterFontFamilies& families) {
  const KnownFormat* format = RecogniseFormat(start);
  if (format == nullptr) return std::nullopt;
  std::string name(format->name);
  if (IsGzip(*format)) {
    const std::vector<std::uint8_t> plain = ReadGzipStart(start.bytes);
    const KnownFormat* inside = RecogniseFormat({plain, 0});
    if (inside != nullptr && inside->use == FormatUse::kFont) {
      return Describe(path, *inside, std::string(inside->name) + ", compressed with gzip", families);
    }
  }
  return Describe(path, *format, name, families);
}

bool IsCollection(const RegularFile& file) {
  std::array<std::uint8_t, 4> tag = {};
  return file.ReadAt(0, tag) == tag.size() && StartsWith(tag, "ttcf");
}

Explanation ExplainCollection(const std::string& path, const CreationResult& result,
                              PrinterFontFamilies& families) {
  if (result.claimed_faces > 0) {
    const Explanation lost = LostCollectionFaces(result);
    if (lost.outcome == Outcome::kFaces) return ReadOnSecondTry();
    return {Outcome::kDamaged, "a collection of which no face can be read; " + lost.reason, lost.listed};
  }
  const auto file = RegularFile::Open(path);
  if (!file) return {Outcome::kUnreadable, kUnreadable};
  if (file->size() == 0) return {Outcome::kDamaged, "empty"};
  if (file->size() > std::numeric_limits<std::uint32_t>::max()) {
    return {Outcome::kDamaged, "4 GiB or larger, more than a collection can be"};
  }
  if (result.collection_status == kCollectionFileError) {
    return {Outcome::kUnreadable, Words(result.collection_status)};
  }
  if (IsCollection(*file)) return {Outcome::kDamaged, Words(result.collection_status)};
  const OpenedStart opened(*file);
  if (const auto kind = SfntKind(opened.start().bytes)) {
    return {Outcome::kOther, std::string(*kind) + InSpiteOfExtension(path) +
                                 ": rename it so that it ends in " +
                                 (*kind == "an OpenType font" ? ".otf" : ".ttf")};
  }
  return ExplainOtherFormat(path, opened.start(), families)
      .value_or(Explanation{Outcome::kDamaged, Words(result.collection_status) +
                                                   ", which its extension .ttc makes Quillmark expect"});
}

// The extension is all that keeps this font from being read, or it is damaged.
Explanation ExplainSfnt(const std::string& path, const RegularFile& file, std::string_view kind) {
  Budget budget;
  const std::string name(kind);
  try {
    const SfntData font(file, static_cast<std::uint32_t>(file.size()), &budget);
    const auto names = getMetaDataFromNamesTable(font);
    if (const auto* fault = std::get_if<NameFault>(&names)) {
      return {Outcome::kDamaged, name + " that is damaged: " + Words(*fault, "the file")};
    }
  } catch (const BudgetSpent&) {
    return {Outcome::kDamaged, name + " that is damaged: " + kRepeatsItsBytes};
  }
  if (IsReadAsSfnt(path)) return ReadOnSecondTry();
  const std::string extension = KnownExtension(path);
  return {Outcome::kOther, name +
                               (extension.empty() ? ", which is not read without its extension"
                                                  : ", which is not read under the extension " + extension) +
                               ": rename it so that it ends in " +
                               (kind == "an OpenType font" ? ".otf" : ".ttf")};
}

bool IsText(Bytes start) {
  return std::all_of(start.begin(), start.end(),
                     [](std::uint8_t c) { return c >= 0x20 || (c >= '\t' && c <= '\r'); });
}

// Texts and other data begin with the marks of sfnt fonts, too: "true", a version 1.0. Without the name of a
// font they are one only with as many tables as fonts have.
std::optional<std::string_view> SfntKindOf(const std::string& path, Bytes start) {
  const std::uint16_t tables = U16At(start, 4).value_or(0);
  const bool is_plausible = tables > 0 && tables <= 0xFF;
  return is_plausible || IsNamedAsFont(path) ? SfntKind(start) : std::nullopt;
}

// Whether the file begins as resource files mostly do: their data lie behind 256 bytes, the map behind the
// data.
bool BeginsAsResourceFile(Bytes start) {
  constexpr std::uint32_t kUsualDataStart = 256;
  const std::uint64_t map_start = U32At(start, 4).value_or(0);
  return U32At(start, 0) == kUsualDataStart &&
         map_start == std::uint64_t{kUsualDataStart} + U32At(start, 8).value_or(0);
}

Explanation ExplainUnknown(const std::string& path, const FileStart& start, PrinterFontFamilies& families) {
  switch (fontTypeFromExtension(path.c_str())) {
    case kExtensionPs:
    case kExtensionPfm:
    case kExtensionPfb:
    case kExtensionMmm:
      return ExplainPrinterFont(path, "a printer font by its extension " + KnownExtension(path), families);
    case kExtensionFot:
    case kExtensionFnt:
    case kExtensionFon:
    case kExtensionInf:
      return {Outcome::kOther, "not read, as no file with the extension " + KnownExtension(path) + " is"};
    default:
      return NoFont(path, std::string(IsText(start.bytes) ? "a text file" : "unknown data") +
                              InSpiteOfExtension(path) + ", not a font that Quillmark reads");
  }
}

// Explains a file whose fonts are looked for in its data fork, which is not empty.
Explanation ExplainDataFork(const std::string& path, const RegularFile& file,
                            QuillmarkResourceFile* resources, PrinterFontFamilies& families) {
  if (file.size() >= std::numeric_limits<std::uint32_t>::max())
    return NoFont(path, "4 GiB or larger, more than a font can be");
  const OpenedStart opened(file);
  const FileStart start = opened.start();
  if (start.bytes.empty()) return {Outcome::kUnreadable, kUnreadable};
  if (StartsWith(start.bytes, "ttcf")) {
    return {Outcome::kOther,
            "a TrueType collection" + InSpiteOfExtension(path) +
                ", and collections are read by the extension .ttc only: rename it so that it ends in .ttc"};
  }
  if (const auto kind = SfntKindOf(path, start.bytes)) return ExplainSfnt(path, file, *kind);
  if (resources != nullptr && resources->isDataFork()) return WhyNoFonts(*resources);
  if (auto other = ExplainOtherFormat(path, start, families)) return *std::move(other);
  const bool is_map =
      fontTypeFromExtension(path.c_str()) == kExtensionDfont || BeginsAsResourceFile(start.bytes);
  if (is_map && resources == nullptr) {
    if (const auto fault = FaultOfMap(Fork(file, 0, file.size()))) {
      return {Outcome::kDamaged, "a damaged resource file: " + Words(*fault)};
    }
  }
  return ExplainUnknown(path, start, families);
}

Explanation ExplainEmptyDataFork(const std::string& path, QuillmarkResourceFile* resources) {
  if (resources != nullptr) return WhyNoFonts(*resources);
  const auto found = FindResourceFork(path);
  const auto fault = found ? FaultOfMap(found->fork) : std::nullopt;
  if (fault) {
    return {Outcome::kDamaged, "a font file whose resource fork, in " + Printable(found->where) +
                                   ", is damaged: " + Words(*fault)};
  }
  return NoFont(path, NoForkAnywhere(path));
}

// Resource files are opened by paths that are UTF-8 only.
bool HidesResources(const std::string& path) {
  if (IsValidUtf8(path)) return false;
  if (FindResourceFork(path)) return true;
  const auto data = OpenDataFork(path);
  return data && !FaultOfMap(*data);
}

// Opens and reads the file, since only that shows missing permissions, too few descriptors and failing media.
// Returns 0 or the errno.
int TryToRead(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (file < 0) return errno;
  char byte = 0;
  const int error = ::read(file, &byte, 1) < 0 ? errno : 0;
  ::close(file);
  return error;
}

Explanation ExplainNoStatus(const std::string& path, int error) {
  struct stat link {};
  const bool is_nowhere = error == ENOENT || error == ENOTDIR || error == ELOOP;
  if (is_nowhere && ::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode)) {
    return NoFont(path, "a link that leads nowhere");
  }
  switch (error) {
    case ENOENT:
      return {Outcome::kUnreadable, "no such file"};
    case ENOTDIR:
      return {Outcome::kUnreadable, "no such file, for a part of its path is no folder"};
    case EACCES:
      return {Outcome::kUnreadable, "no permission to look into its folder"};
    default:
      return {Outcome::kUnreadable, std::strerror(error)};
  }
}

// What keeps the path from being read as a file; nothing when it can be.
std::optional<Explanation> ExplainPath(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return ExplainNoStatus(path, errno);
  if (S_ISDIR(info.st_mode)) return Explanation{Outcome::kOther, "a folder, not a file"};
  if (S_ISFIFO(info.st_mode)) return Explanation{Outcome::kOther, "a named pipe, not a file"};
  if (S_ISSOCK(info.st_mode)) return Explanation{Outcome::kOther, "a socket, not a file"};
  if (!S_ISREG(info.st_mode)) return Explanation{Outcome::kOther, "a device, not a file"};
  const int error = TryToRead(path);
  if (error == 0) return std::nullopt;
  return Explanation{Outcome::kUnreadable, error == EACCES
                                               ? "no permission to read it"
                                               : std::string(kUnreadable) + ": " + std::strerror(error)};
}

// Of a file that gave no face.
Explanation ExplainWithoutFaces(const std::string& path, const CreationResult& result,
                                PrinterFontFamilies& families) {
  if (auto found = ExplainPath(path)) return *std::move(found);
  if (auto reason = WhySidecar(path)) return {Outcome::kOther, *std::move(reason)};
  if (fontTypeFromExtension(path.c_str()) == kExtensionTtc) return ExplainCollection(path, result, families);
  const ResourceFileHolder resources = OpenResources(path);
  if (FileHasFONDsInResourceFork(resources.get())) {
    return WhyNoFamilyFace(result, countResType(resources.get(), kFond));
  }
  if (FileHasPOSTsInResourceFork(resources.get()))
    return ExplainPrinterFont(path, "a printer font", families);
  if (HidesResources(path)) {
    return {Outcome::kUnreadable,
            "its fonts are resources, and these are read by paths in UTF-8 only: rename it"};
  }
  if (path.size() > kLongestFontPath) {
    return {
        IsNamedAsFont(path) ? Outcome::kUnreadable : Outcome::kOther,
        "its path is too long: only " + std::to_string(kLongestFontPath) + " bytes of a path are looked at"};
  }
  const auto file = RegularFile::Open(path);
  if (!file) return {Outcome::kUnreadable, kUnreadable};
  return file->size() == 0 ? ExplainEmptyDataFork(path, resources.get())
                           : ExplainDataFork(path, *file, resources.get(), families);
}

}  // namespace

std::optional<std::string> WhyNotReadable(const std::string& path) {
  auto found = ExplainPath(path);
  if (!found) return std::nullopt;
  return std::move(found->reason);
}

Explanation ExplainNoFace(const std::string& path) {
  PrinterFontFamilies families;
  const WatchedFiles files;
  const CreationResult result = CreateFaces(files, path, QM_ATTRIBUTES_ALL);
  if (files.failure()) return {Outcome::kUnreadable, files.WhyUnread(path)};
  return Explain(path, result, families);
}

Explanation Explain(const std::string& path, const CreationResult& result, PrinterFontFamilies& families) {
  const bool is_collection = fontTypeFromExtension(path.c_str()) == kExtensionTtc;
  const bool has_faces = result.faces.size() > 0;
  if (result.budget_spent) {
    return {has_faces ? Outcome::kIncomplete : Outcome::kDamaged, kRepeatsItsBytes};
  }
  if (!has_faces) return ExplainWithoutFaces(path, result, families);
  if (!is_collection) return LostStyles(result);
  if (result.faults.empty()) return {Outcome::kFaces, {}, result.claimed_faces};
  return LostCollectionFaces(result);
}

std::string Told(std::size_t faces, const Explanation& explanation) {
  if (faces == 0) return explanation.reason;
  if (explanation.reason.empty()) return "gives " + Faces(faces);
  if (!explanation.listed) return "gives " + Faces(faces) + "; " + explanation.reason;
  return "gives " + std::to_string(faces) + " of the " + Faces(*explanation.listed) + " it lists; " +
         explanation.reason;
}

}  // namespace quillmark::tool
