#include "reasons/reason.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <variant>
#include <vector>

#include "analysis/font_extension.h"
#include "analysis/font_kind.h"
#include "analysis/name_table.h"
#include "platform/text/text_encoding.h"
#include "reasons/fault_words.h"
#include "reasons/fork_places.h"
#include "reasons/known_formats.h"
#include "reasons/lost_faces.h"
#include "reasons/opened_font.h"
#include "reasons/printer_fonts.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUnreadable = "cannot be read";

// With its dot, as the library looks at it: empty when it is none that the library knows.
std::string KnownExtension(const std::string& path) {
  if (fontTypeFromExtension(path.c_str()) == kExtensionOther) return {};
  return Printable(path.substr(path.rfind('.')));
}

// Whether the name promises a font that is read.
bool IsNamedAsFont(const std::string& path) {
  const FontExtension extension = fontTypeFromExtension(path.c_str());
  return extension == kExtensionTtf || extension == kExtensionOtf || extension == kExtensionTtc ||
         extension == kExtensionDfont;
}

std::string DespiteExtension(const std::string& path) {
  return IsNamedAsFont(path) ? " despite its extension " + KnownExtension(path) : "";
}

// For a sound font whose name keeps it from being read.
Outcome UnreadName(const std::string& path) {
  return IsNamedAsFont(path) ? Outcome::kMisnamed : Outcome::kOther;
}

// For a file that holds no font: it counts as damaged only when its name promises one.
Explanation NoFont(const std::string& path, std::string reason) {
  return {IsNamedAsFont(path) ? Outcome::kDamaged : Outcome::kOther, std::move(reason)};
}

// For a file that shows no fault when it is examined a second time.
Explanation ReadOnSecondTry() {
  constexpr const char* kReason =
      "could not be read whole: memory or open files ran short, or it changed meanwhile";
  return {Outcome::kUnreadable, kReason, {}, true};
}

// For a file that could be opened and read a moment before.
Explanation ReadBefore() { return {Outcome::kUnreadable, kUnreadable, {}, true}; }

bool IsReadAsSfnt(const std::string& path) {
  const FontExtension extension = fontTypeFromExtension(path.c_str());
  return extension == kExtensionTtf || extension == kExtensionOtf;
}

std::string Faces(std::size_t count) { return std::to_string(count) + (count == 1 ? " face" : " faces"); }

std::vector<std::uint8_t> ReadStart(const RegularFile& file) {
  std::vector<std::uint8_t> start(kFileStartSize);
  start.resize(file.ReadAt(0, start));
  return start;
}

// How an sfnt font of that kind must be named to be read.
std::string NameAdvice(std::string_view kind) {
  return std::string(": its name must end in ") + (kind == "an OpenType font" ? ".otf" : ".ttf");
}

// Explains a file whose first bytes are those of a format that is not read.
std::optional<Explanation> ExplainOtherFormat(const OpenedFont& font, const FileStart& start,
                                              PrinterFontFamilies& families) {
  const auto format = RecogniseFormat(start);
  if (!format) return std::nullopt;
  if (format->use == FormatUse::kPrinterFont) return ExplainPrinterFont(font, format->name, families);
  const std::string& path = font.file.path();
  const std::string advice = format->advice.empty() ? "" : ": " + std::string(format->advice);
  const std::string whole = format->name + DespiteExtension(path);
  if (format->use == FormatUse::kNoFont) return NoFont(path, whole + ", not a font" + advice);
  return Explanation{Outcome::kOther, whole + ", which Quillmark does not read" + advice};
}

Explanation ExplainCollection(OpenedFont& font, const CreationResult& result, PrinterFontFamilies& families) {
  if (result.claimed_faces > 0) {
    const Explanation lost = LostCollectionFaces(result);
    if (lost.outcome == Outcome::kFaces) return ReadOnSecondTry();
    return {Outcome::kDamaged, "a collection of which no face can be read; " + lost.reason, lost.listed};
  }
  const auto& file = font.file.Data();
  if (!file) return ReadBefore();
  if (file->size() == 0) return {Outcome::kDamaged, "empty"};
  if (file->size() > std::numeric_limits<std::uint32_t>::max()) {
    return {Outcome::kDamaged, "4 GiB or larger, more than a collection can be"};
  }
  const std::string status = Words(result.collection_status);
  if (result.collection_status == kCollectionFileError) return {Outcome::kUnreadable, status, {}, true};
  const std::vector<std::uint8_t> start = ReadStart(*file);
  if (StartsWith(start, "ttcf")) return {Outcome::kDamaged, status};
  if (const auto kind = SfntKind(start)) {
    return {Outcome::kMisnamed, std::string(*kind) + DespiteExtension(font.file.path()) + NameAdvice(*kind)};
  }
  return ExplainOtherFormat(font, {start, file->size()}, families)
      .value_or(Explanation{Outcome::kDamaged, status + ", which its extension .ttc makes Quillmark expect"});
}

// What is wrong with a font that creation did not read because of its name; empty when nothing is.
std::string WhyUnsound(FontFile& opened, const RegularFile& file) {
  try {
    const SfntData font(file, static_cast<std::uint32_t>(file.size()), opened.budget());
    const auto names = getMetaDataFromNamesTable(font);
    const auto* fault = std::get_if<NameFault>(&names);
    return fault == nullptr ? "" : Words(*fault, "the file");
  } catch (const BudgetSpent&) {
    return TooMuchWork(opened.budget()->most_work());
  }
}

// The extension is all that keeps this font from being read, or it is damaged.
Explanation ExplainSfnt(FontFile& opened, const RegularFile& file, const CreationResult& result,
                        std::string_view kind) {
  const std::string name(kind);
  const auto* fault = result.faults.empty() ? nullptr : std::get_if<NameFault>(&result.faults.front().why);
  if (fault == nullptr && IsReadAsSfnt(opened.path())) return ReadOnSecondTry();
  const std::string damage = fault != nullptr ? Words(*fault, "the file") : WhyUnsound(opened, file);
  if (!damage.empty()) return {Outcome::kDamaged, name + " that is damaged: " + damage};
  const std::string extension = KnownExtension(opened.path());
  const std::string hindrance = extension.empty() ? ", which is not read without its extension"
                                                  : ", which is not read under the extension " + extension;
  return {UnreadName(opened.path()), name + hindrance + NameAdvice(kind)};
}

bool IsText(Bytes start) {
  return std::all_of(start.begin(), start.end(),
                     [](std::uint8_t c) { return c >= 0x20 || (c >= '\t' && c <= '\r'); });
}

// "true" and 00 01 00 00 also begin other data: unless the name is a font's, requires 1 to 255 tables.
std::optional<std::string_view> SfntKindOf(const std::string& path, Bytes start) {
  const std::uint16_t tables = U16At(start, 4).value_or(0);
  const bool is_plausible = tables > 0 && tables <= 0xFF;
  return is_plausible || IsNamedAsFont(path) ? SfntKind(start) : std::nullopt;
}

// Whether the file begins as resource files mostly do: their data lie after 256 bytes, the map after the
// data.
bool BeginsAsResourceFile(Bytes start) {
  constexpr std::uint32_t kUsualDataStart = 256;
  const std::uint64_t map_start = U32At(start, 4).value_or(0);
  return U32At(start, 0) == kUsualDataStart &&
         map_start == std::uint64_t{kUsualDataStart} + U32At(start, 8).value_or(0);
}

Explanation ExplainUnknown(const OpenedFont& font, const FileStart& start, PrinterFontFamilies& families) {
  const std::string& path = font.file.path();
  switch (fontTypeFromExtension(path.c_str())) {
    case kExtensionPs:
    case kExtensionPfm:
    case kExtensionPfb:
    case kExtensionMmm:
      return ExplainPrinterFont(font, "a printer font by its extension " + KnownExtension(path), families);
    case kExtensionFot:
    case kExtensionFnt:
    case kExtensionFon:
    case kExtensionInf:
      return {Outcome::kOther, "not read, as no file with the extension " + KnownExtension(path) + " is"};
    default:
      return NoFont(path, std::string(IsText(start.bytes) ? "a text file" : "unknown data") +
                              DespiteExtension(path) + ", not a font that Quillmark reads");
  }
}

// Explains a file whose fonts are looked for in its data fork, which is not empty.
Explanation ExplainDataFork(OpenedFont& font, const RegularFile& file, const CreationResult& result,
                            const std::optional<MapFault>& map_fault, PrinterFontFamilies& families) {
  const std::string& path = font.file.path();
  if (file.size() >= std::numeric_limits<std::uint32_t>::max())
    return NoFont(path, "4 GiB or larger, more than a font can be");
  const std::vector<std::uint8_t> bytes = ReadStart(file);
  const FileStart start{bytes, file.size()};
  if (bytes.empty()) return ReadBefore();
  if (StartsWith(bytes, "ttcf")) {
    return {UnreadName(path),
            "a TrueType collection" + DespiteExtension(path) +
                ", and collections are read by the extension .ttc only: its name must end in .ttc"};
  }
  if (const auto kind = SfntKindOf(path, bytes)) return ExplainSfnt(font.file, file, result, *kind);
  if (result.resources && result.resources->in_data_fork) return WhyNoFonts(path, *result.resources);
  if (auto other = ExplainOtherFormat(font, start, families)) return *std::move(other);
  const bool is_map = fontTypeFromExtension(path.c_str()) == kExtensionDfont || BeginsAsResourceFile(bytes);
  if (is_map && map_fault) {
    return {Outcome::kDamaged, "a damaged resource file: " + Words(*map_fault)};
  }
  return ExplainUnknown(font, start, families);
}

Explanation ExplainEmptyDataFork(const std::string& path, const CreationResult& result) {
  if (result.resources) return WhyNoFonts(path, *result.resources);
  if (const auto& fault = result.map_faults.resource_fork) {
    return {Outcome::kDamaged, "a font file whose resource fork, in " + Printable(result.damaged_fork) +
                                   ", is damaged: " + Words(*fault)};
  }
  return NoFont(path, NoForkAnywhere(path));
}

// Opens and reads the file, since only that shows missing permissions, too few descriptors and failing media.
// Returns 0 or the errno.
int TryToRead(const FileSystem& files, const std::string& path) {
  const auto file = files.Open(path);
  if (!file) return errno;
  std::array<std::uint8_t, 1> byte;
  return file->ReadAt(0, byte).error;
}

Explanation ExplainNoStatus(const std::string& path, int error) {
  const bool is_nowhere = error == ENOENT || error == ENOTDIR || error == ELOOP;
  std::error_code ignored;
  if (is_nowhere && fs::is_symlink(path, ignored)) {
    return {Outcome::kDanglingLink, "a link that leads nowhere"};
  }
  switch (error) {
    case ENOENT:
      return {Outcome::kUnreadable,
              path == "-" ? "no such file; - is standard input only as a path of identify, why and read"
                          : "no such file"};
    case ENOTDIR:
      return {Outcome::kUnreadable, "no such file, for a part of its path is no folder"};
    case EACCES:
      return {Outcome::kUnreadable, "no permission to look into its folder"};
    default:
      return {Outcome::kUnreadable, std::strerror(error), {}, IsShortage(error)};
  }
}

// What keeps the path from being read as a file; nothing when it can be.
std::optional<Explanation> ExplainPath(const FileSystem& files, const std::string& path) {
  const FileStatus status = files.Status(path);
  if (status.error != 0) return ExplainNoStatus(path, status.error);
  if (!status.regular) {
    std::error_code ignored;  // only the machine's file system has links, pipes and sockets
    const bool is_link = fs::is_symlink(path, ignored);
    if (status.directory)
      return Explanation{Outcome::kFolder,
                         is_link ? "a link to a folder, not a file" : "a folder, not a file"};
    return Explanation{Outcome::kOther, fs::is_fifo(path, ignored)     ? "a named pipe, not a file"
                                        : fs::is_socket(path, ignored) ? "a socket, not a file"
                                                                       : "a device, not a file"};
  }
  const int error = TryToRead(files, path);
  if (error == 0) return std::nullopt;
  return Explanation{
      Outcome::kUnreadable,
      error == EACCES ? "no permission to read it" : std::string(kUnreadable) + ": " + std::strerror(error),
      {},
      IsShortage(error)};
}

// Of a file that gave no face.
Explanation ExplainWithoutFaces(OpenedFont& font, const CreationResult& result,
                                PrinterFontFamilies& families) {
  FontFile& file = font.file;
  const std::string& path = file.path();
  if (auto found = ExplainPath(font.files, path)) return *std::move(found);
  if (auto reason = WhySidecar(font)) return {Outcome::kOther, *std::move(reason)};
  if (fontTypeFromExtension(path.c_str()) == kExtensionTtc) return ExplainCollection(font, result, families);
  std::optional<MapFault> map_fault = result.map_faults.data_fork;
  if (!IsValidUtf8(path)) {  // where creation looks for no resources
    const auto data = file.DataFork();
    if (file.ResourceFork() || (data && ResourceMap::Open(*data, file.budget(), &map_fault.emplace()))) {
      return {Outcome::kUnreadable,
              "its fonts are resources, and these are read by paths in UTF-8 only: rename it"};
    }
  }
  if (result.resources && result.resources->fonds > 0) return WhyNoFamilyFace(result);
  if (result.resources && result.resources->posts > 0) {
    return ExplainPrinterFont(font, "a printer font", families);
  }
  if (path.size() > kLongestFontPath) {
    return {
        IsNamedAsFont(path) ? Outcome::kUnreadable : Outcome::kOther,
        "its path is too long: only " + std::to_string(kLongestFontPath) + " bytes of a path are looked at"};
  }
  const auto& data = file.Data();
  if (!data) return ReadBefore();
  return data->size() == 0 ? ExplainEmptyDataFork(path, result)
                           : ExplainDataFork(font, *data, result, map_fault, families);
}

}  // namespace

std::string TooMuchWork(Work work) {
  return "reading it takes more work than any real font of its size, so that the rest was not looked at: " +
         Words(work);
}

std::optional<std::string> WhyNotReadable(const std::string& path) {
  auto found = ExplainPath(SystemFiles(), path);
  if (!found) return std::nullopt;
  return std::move(found->reason);
}

Explanation Explain(const FileSystem& files, const std::string& path, const CreationResult& result,
                    PrinterFontFamilies& families) {
  const bool is_collection = fontTypeFromExtension(path.c_str()) == kExtensionTtc;
  const bool has_faces = result.faces.size() > 0;
  if (result.spent_on) {
    const std::optional<std::uint32_t> listed =
        is_collection && result.claimed_faces > 0 ? std::optional(result.claimed_faces) : std::nullopt;
    return {has_faces ? Outcome::kIncomplete : Outcome::kDamaged, TooMuchWork(*result.spent_on), listed};
  }
  if (!has_faces) {
    OpenedFont font(path, files);
    try {
      return ExplainWithoutFaces(font, result, families);
    } catch (const BudgetSpent&) {
      return {Outcome::kDamaged, TooMuchWork(font.budget.most_work())};
    }
  }
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
