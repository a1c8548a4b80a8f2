#include "collection_faults.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "analysis/font_extension.h"
#include "analysis/name_table.h"
#include "platform/forks.h"
#include "printable.h"
#include "sfnt_faults.h"
#include "type_text.h"

namespace quillmark::tool {
namespace {

constexpr std::uint32_t kHeaderSize = 12;  // of a collection, and of a table directory
constexpr std::uint32_t kEntrySize = 16;
// Real collections have tens of faces, and what is said of them is to be read by people.
constexpr std::uint32_t kMostFacesExplained = 256;
constexpr std::size_t kMostReasons = 3;
constexpr std::size_t kMostNumbers = 12;

std::vector<std::uint8_t> Read(const RegularFile& file, std::uint64_t offset, std::size_t length) {
  std::vector<std::uint8_t> bytes(length);
  bytes.resize(file.ReadAt(offset, bytes));
  return bytes;
}

// What stands against a table of the directory; empty when nothing does.
std::string TableFault(Bytes entry, std::uint64_t file_size) {
  const std::string table = "its table " + TypeText(U32At(entry, 0).value_or(0));
  const std::uint64_t length = U32At(entry, 12).value_or(0);
  const std::uint64_t end = U32At(entry, 8).value_or(0) + length;
  const std::uint64_t padding = (4 - length % 4) % 4;
  if (end > file_size) {
    return table + " runs to byte " + std::to_string(end) + ", and the file has " +
           std::to_string(file_size) + ": the rest is missing or the font is damaged";
  }
  if (end + padding <= file_size) return {};
  const std::uint64_t missing = end + padding - file_size;
  return table + " lacks " + std::to_string(missing) + (missing == 1 ? " byte" : " bytes") +
         " of its padding at the end of the file (as many zero bytes at the end of a copy mend that)";
}

// What became of the faces of a collection, taken in the order of its list as the library takes them.
class FaceWalk {
 public:
  FaceWalk(const std::string& path, const TrueTypeCollectionFont& collection)
      : path_(path), collection_(collection) {}

  // Whether a face was lost for another cause than that one before it is the same.
  bool found_fault() const { return found_fault_; }

  // Why the face gives none of its own; empty when it does.
  std::string Explain(std::uint32_t face) {
    const auto offset = collection_.directoryOffset(face);
    if (!offset) return Fault(CutFault(path_, collection_, face));
    const auto known = by_offset_.find(*offset);
    if (known != by_offset_.end()) {
      return known->second.second.empty() ? SameAs(known->second.first) : known->second.second;
    }
    return by_offset_.emplace(*offset, std::pair(face, ExplainNew(face))).first->second.second;
  }

 private:
  std::string Fault(std::string reason) {
    found_fault_ = true;
    return reason;
  }

  static std::string SameAs(std::uint32_t face) { return "the same font as face " + std::to_string(face); }

  std::string ExplainNew(std::uint32_t face) {
    const auto found = collection_.FindFace(face);
    if (!found) return Fault(CutFault(path_, collection_, face));
    const SfntData font = collection_.FontOf(*found);
    if (auto fault = NameFault(font, "the face")) return Fault(*fault);
    std::string name;
    getPostScriptNameFromNamesTable(font, name);
    const auto [first, is_new] = by_name_.try_emplace(name, face);
    if (is_new) return {};
    const std::string other = "face " + std::to_string(first->second);
    return name.empty() ? "no PostScript name, like " + other
                        : "the PostScript name of " + other + ", " + Printable(name);
  }

  const std::string& path_;
  const TrueTypeCollectionFont& collection_;
  std::map<std::uint32_t, std::pair<std::uint32_t, std::string>> by_offset_;  // first face, its reason
  std::map<std::string, std::uint32_t> by_name_;
  bool found_fault_ = false;
};

std::string Numbers(const std::vector<std::uint32_t>& faces) {
  std::string text = faces.size() == 1 ? "face " : "faces ";
  for (std::size_t i = 0; i < std::min(faces.size(), kMostNumbers); ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(faces[i]);
  }
  if (faces.size() > kMostNumbers) text += " and " + std::to_string(faces.size() - kMostNumbers) + " more";
  return text;
}

}  // namespace

bool IsCollection(const std::string& path) {
  const auto file = RegularFile::Open(path);
  return file && StartsWith(Read(*file, 0, 4), "ttcf");
}

std::optional<std::uint32_t> StatedFaces(const std::string& path) {
  const auto file = RegularFile::Open(path);
  return file ? U32At(Read(*file, 0, kHeaderSize), 8) : std::nullopt;
}

bool IsUnreadCollection(const std::string& path) {
  if (fontTypeFromExtension(path.c_str()) != kExtensionTtc || !IsCollection(path)) return false;
  return TrueTypeCollectionFont(path).ReadIntoMemory() == kCollectionFileError;
}

std::string WhyNoList(const std::string& path, TrueTypeCollectionFont& collection) {
  if (collection.faceCount() > 0) return {};
  switch (collection.ReadIntoMemory()) {
    case kCollectionWrongVersion: {
      const auto file = RegularFile::Open(path);
      if (!file || file->size() == 0) return "empty";
      return "a collection of an unknown version";
    }
    case kCollectionFileError: {
      const auto file = RegularFile::Open(path);
      const bool too_large = file && file->size() > std::numeric_limits<std::uint32_t>::max();
      return too_large ? "4 GiB or larger, more than a collection can be"
                       : "cannot be read whole: the file is too large for the memory or changed meanwhile";
    }
    case kCollectionOutOfBounds:
      return "a damaged collection: the file ends inside its header";
    case kCollectionWrongTag:
      return "not a collection";
    case kCollectionOk:
    case kCollectionNothing:
      break;
  }
  return "a damaged collection: its header states 0 faces";
}

std::string CutFault(const std::string& path, const TrueTypeCollectionFont& collection, std::uint32_t face) {
  const auto file = RegularFile::Open(path);
  if (!file) return "the file cannot be read";
  const std::uint64_t size = file->size();
  const auto offset = collection.directoryOffset(face);
  if (!offset) return "the file ends inside the list of faces";
  const std::vector<std::uint8_t> header = Read(*file, *offset, kHeaderSize);
  if (std::uint64_t{*offset} + kHeaderSize >= size) {
    return "its list of tables lies at byte " + std::to_string(*offset) + ", and the file has " +
           std::to_string(size);
  }
  const std::size_t count = U16At(header, 4).value_or(0);
  const std::vector<std::uint8_t> entries =
      Read(*file, std::uint64_t{*offset} + kHeaderSize, kEntrySize * count);
  if (entries.size() < kEntrySize * count) return "the file ends inside its list of tables";

  std::uint64_t font_size = kHeaderSize + entries.size();
  ByteReader reader(entries);
  while (const auto entry = reader.Take(kEntrySize)) {
    font_size += (std::uint64_t{U32At(*entry, 12).value_or(0)} + 3) / 4 * 4;
    const std::string fault = TableFault(*entry, size);
    if (!fault.empty()) return fault;
    if (font_size >= size) break;
  }
  return "cut out it would be no smaller than the whole collection, as only damaged ones are";
}

Explanation LostFaces(const std::string& path, const TrueTypeCollectionFont& collection) {
  // In the order in which they first come.
  std::vector<std::pair<std::string, std::vector<std::uint32_t>>> reasons;
  FaceWalk walk(path, collection);
  const std::uint32_t stated = collection.faceCount();
  for (std::uint32_t face = 0; face < std::min(stated, kMostFacesExplained); ++face) {
    const std::string reason = walk.Explain(face);
    if (reason.empty()) continue;
    const auto known = std::find_if(reasons.begin(), reasons.end(),
                                    [&](const auto& entry) { return entry.first == reason; });
    if (known == reasons.end()) {
      reasons.push_back({reason, {face}});
    } else {
      known->second.push_back(face);
    }
  }
  std::string text;
  for (std::size_t i = 0; i < std::min(reasons.size(), kMostReasons); ++i) {
    text += (i == 0 ? "" : "; ") + Numbers(reasons[i].second) + ": " + reasons[i].first;
  }
  if (reasons.size() > kMostReasons) {
    text += "; and " + std::to_string(reasons.size() - kMostReasons) + " more reasons";
  }
  if (stated > kMostFacesExplained) {
    text += (text.empty() ? "" : "; ") + std::string("only the first ") +
            std::to_string(kMostFacesExplained) + " faces were looked at for this";
  }
  // No real collection has so many faces: what was not looked at counts as lost.
  const bool is_complete = !walk.found_fault() && stated <= kMostFacesExplained;
  return {is_complete ? Outcome::kFaces : Outcome::kIncomplete, text, stated};
}

}  // namespace quillmark::tool
