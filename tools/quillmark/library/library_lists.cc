#include "library/library_lists.h"

#include <algorithm>
#include <compare>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <type_traits>

#include "analysis/name_match.h"
#include "faces/version_order.h"

namespace quillmark::tool {
namespace {

// Parts faces by a key, in the order in which the keys first occur. Those for which `key_of` gives none are
// left out.
template <typename KeyOf>
std::vector<Faces> PartBy(const Faces& faces, KeyOf key_of) {
  std::map<typename std::invoke_result_t<KeyOf, const LibraryFace&>::value_type, std::size_t> numbers;
  std::vector<Faces> parts;
  for (const LibraryFace* face : faces) {
    auto key = key_of(*face);
    if (!key) continue;
    const auto [found, is_new] = numbers.try_emplace(*std::move(key), parts.size());
    if (is_new) parts.emplace_back();
    parts[found->second].push_back(face);
  }
  return parts;
}

// Sorts faces and parts them where one comes before the next.
template <typename Before>
Group PartInOrder(Faces faces, Before before) {
  std::stable_sort(faces.begin(), faces.end(),
                   [&](const LibraryFace* a, const LibraryFace* b) { return before(*a, *b); });
  Group parts;
  for (const LibraryFace* face : faces) {
    if (parts.empty() || before(*parts.back().back(), *face)) parts.emplace_back();
    parts.back().push_back(face);
  }
  return parts;
}

// A key that is equal for files whose faces are all the same; nothing when the data of a face are unknown.
std::optional<std::vector<std::size_t>> DataOf(const LibraryFile& file) {
  std::vector<std::size_t> data;
  for (const LibraryFace& face : file.faces) data.push_back(face.data);
  std::sort(data.begin(), data.end());
  data.erase(std::unique(data.begin(), data.end()), data.end());
  if (data.empty() || data.back() == kUnknownData) return std::nullopt;
  return data;
}

// Keys of faces; nothing for a face that is left out.

std::optional<std::size_t> KnownData(const LibraryFace& face) {
  if (face.data == kUnknownData) return std::nullopt;
  return face.data;
}

std::optional<std::string> NameWhereDataIsKnown(const LibraryFace& face) {
  if (face.data == kUnknownData) return std::nullopt;
  return face.post_script_name;
}

std::optional<std::string> NameAndFoundry(const LibraryFace& face) {
  if (!HasVersionNumber(face.version)) return std::nullopt;
  return face.post_script_name + '\0' + face.foundry;
}

std::optional<std::string> NameFoundryAndVersion(const LibraryFace& face) {
  auto key = NameAndFoundry(face);
  if (key) key->append(1, '\0').append(VersionKey(face.version));
  return key;
}

std::optional<std::string> ReducedName(const LibraryFace& face) {
  std::string reduced = GFontToolUtils::StripCharsAndNormalizeString(face.post_script_name);
  // A name without ASCII digits and letters reduces to nothing: all such names would count as near.
  if (reduced.empty()) return std::nullopt;
  return reduced;
}

// A TrueType font is one with layout tables or without; a resource file is a format of its own, whatever it
// holds.
std::string FormatOf(const LibraryFace& face) {
  const std::string format = face.kind == "OpenType - TT" ? "TrueType" : face.kind;
  return format + (face.fond_id == -1 ? "" : " in resources");
}

// Which data of one name conflict with others: all of them when foundries differ or a version is unknown,
// since then nothing shows that one font is an older version or another format of the other; otherwise those
// that share version and format.
std::set<std::size_t> DataInConflict(const Faces& faces) {
  std::set<std::size_t> all;
  std::map<std::string, std::set<std::size_t>> by_version_and_format;
  bool explained = true;
  for (const LibraryFace* face : faces) {
    all.insert(face->data);
    by_version_and_format[VersionKey(face->version) + '\0' + FormatOf(*face)].insert(face->data);
    explained = explained && HasVersionNumber(face->version) && face->foundry == faces.front()->foundry;
  }
  if (!explained) return all;
  std::set<std::size_t> in_conflict;
  for (const auto& [key, data] : by_version_and_format) {
    if (data.size() > 1) in_conflict.insert(data.begin(), data.end());
  }
  return in_conflict;
}

// The faces whose names say something, in sets of equal keys that `part` divides. Sets of one part are left
// out; the others are sorted by name.
template <typename KeyOf, typename Part>
std::vector<Group> Groups(const Library& library, KeyOf key_of, Part part) {
  Faces named;
  for (const LibraryFile& file : library.files()) {
    for (const LibraryFace& face : file.faces) {
      if (HoldsLetterOrDigit(face.post_script_name)) named.push_back(&face);
    }
  }
  std::vector<Group> groups;
  for (const Faces& alike : PartBy(named, key_of)) {
    Group group = part(alike);
    if (group.size() > 1) groups.push_back(std::move(group));
  }
  std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
    return a.front().front()->post_script_name < b.front().front()->post_script_name;
  });
  return groups;
}

}  // namespace

std::vector<Copy> Copies(const Library& library) {
  Faces firsts;  // of each file
  Faces all;
  std::vector<std::optional<std::vector<std::size_t>>> data_of_files;
  for (const LibraryFile& file : library.files()) {
    data_of_files.push_back(DataOf(file));
    firsts.push_back(&file.faces.front());
    for (const LibraryFace& face : file.faces) all.push_back(&face);
  }
  const auto data_of_file = [&](const LibraryFace& face) { return data_of_files[face.file]; };
  std::vector<Copy> copies;
  for (Faces& same : PartBy(firsts, data_of_file)) {
    if (same.size() > 1) copies.push_back({true, std::move(same)});
  }
  for (Faces& same : PartBy(all, KnownData)) {
    const auto& first = data_of_files[same.front()->file];
    const bool in_like_files = first && std::all_of(same.begin(), same.end(), [&](const LibraryFace* face) {
                                 return data_of_files[face->file] == first;
                               });
    if (same.front()->file != same.back()->file && !in_like_files) copies.push_back({false, std::move(same)});
  }
  return copies;
}

std::vector<Group> Conflicts(const Library& library) {
  return Groups(library, NameWhereDataIsKnown, [](const Faces& faces) {
    const std::set<std::size_t> in_conflict = DataInConflict(faces);
    Group parts = PartBy(faces, KnownData);
    std::erase_if(parts, [&](const Faces& part) { return !in_conflict.contains(part.front()->data); });
    return parts;
  });
}

std::vector<Group> Formats(const Library& library) {
  return Groups(library, NameFoundryAndVersion, [](const Faces& faces) {
    const auto data = [](const LibraryFace& face) { return std::optional(face.data); };
    const auto format = [](const LibraryFace& face) { return std::optional(FormatOf(face)); };
    return PartBy(faces, data).size() < 2 ? Group() : PartBy(faces, format);  // equal data are copies
  });
}

std::vector<Group> Versions(const Library& library) {
  return Groups(library, NameAndFoundry, [](const Faces& faces) {
    return PartInOrder(faces, [](const LibraryFace& a, const LibraryFace& b) {
      return std::is_gt(CompareVersions(a.version, b.version));
    });
  });
}

std::vector<Group> NearNames(const Library& library) {
  return Groups(library, ReducedName, [](const Faces& faces) {
    return PartInOrder(faces, [](const LibraryFace& a, const LibraryFace& b) {
      return a.post_script_name < b.post_script_name;
    });
  });
}

}  // namespace quillmark::tool
