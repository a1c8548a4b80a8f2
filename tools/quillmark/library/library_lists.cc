#include "library/library_lists.h"

#include <algorithm>
#include <compare>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "analysis/name_match.h"
#include "faces/version_order.h"
#include "library/name_letters.h"

namespace quillmark::tool {
namespace {

// Faces by key, in the order in which the keys were first added.
class Buckets {
 public:
  void Add(const std::string& key, const LibraryFace* face) {
    const auto [found, is_new] = numbers_.emplace(key, faces_.size());
    if (is_new) faces_.emplace_back();
    faces_[found->second].push_back(face);
  }
  std::vector<Faces> Take() { return std::move(faces_); }

 private:
  std::unordered_map<std::string, std::size_t> numbers_;
  std::vector<Faces> faces_;
};

// A key that is equal for files whose faces are all the same; nothing when the data of a face are unknown.
std::optional<std::string> DataOf(const LibraryFile& file) {
  std::vector<std::size_t> data;
  for (const LibraryFace& face : file.faces) data.push_back(face.data);
  std::sort(data.begin(), data.end());
  data.erase(std::unique(data.begin(), data.end()), data.end());
  if (data.empty() || data.back() == kUnknownData) return std::nullopt;
  std::string text;
  for (const std::size_t number : data) text += std::to_string(number) + ' ';
  return text;
}

// The key by which faces are grouped; nothing for a face that is left out.
using Key = std::optional<std::string> (*)(const LibraryFace&);

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

// The key of a font's format. A TrueType font is one with layout tables or without; a resource file is a
// format of its own, whatever it holds.
std::string FormatOf(const LibraryFace& face) {
  const std::string format = face.kind == "OpenType - TT" ? "TrueType" : face.kind;
  return format + (face.fond_id == -1 ? "" : " in resources");
}

// Sets of faces with equal keys whose names say something.
std::vector<Faces> NamedAlike(const Library& library, Key key) {
  Buckets alike;
  for (const LibraryFile& file : library.files()) {
    for (const LibraryFace& face : file.faces) {
      if (!HoldsLetterOrDigit(face.post_script_name)) continue;
      if (const auto text = key(face)) alike.Add(*text, &face);
    }
  }
  return alike.Take();
}

// Cuts a set between neighbours of which `apart` holds.
Group Cut(const Faces& faces, bool (*apart)(const LibraryFace&, const LibraryFace&)) {
  Group parts;
  for (const LibraryFace* face : faces) {
    if (parts.empty() || apart(*parts.back().back(), *face)) parts.emplace_back();
    parts.back().push_back(face);
  }
  return parts;
}

Group ByData(const Faces& faces) {
  Buckets by_data;
  for (const LibraryFace* face : faces) by_data.Add(std::to_string(face->data), face);
  return by_data.Take();
}

// Which data of one name conflict with others: all of them when foundries differ or a version is unknown,
// since then nothing shows that one font is an older version or another format of the other; otherwise those
// that share version and format.
std::unordered_set<std::size_t> DataInConflict(const Faces& faces) {
  std::unordered_set<std::size_t> all;
  std::unordered_map<std::string, std::set<std::size_t>> by_version_and_format;
  bool explained = true;
  for (const LibraryFace* face : faces) {
    all.insert(face->data);
    by_version_and_format[VersionKey(face->version) + '\0' + FormatOf(*face)].insert(face->data);
    explained = explained && HasVersionNumber(face->version) && face->foundry == faces.front()->foundry;
  }
  if (!explained) return all;
  std::unordered_set<std::size_t> in_conflict;
  for (const auto& [key, data] : by_version_and_format) {
    if (data.size() > 1) in_conflict.insert(data.begin(), data.end());
  }
  return in_conflict;
}

// Keeps groups of more than one part.
void Collect(std::vector<Group>& groups, Group group) {
  if (group.size() > 1) groups.push_back(std::move(group));
}

void SortByName(std::vector<Group>& groups) {
  std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
    return a.front().front()->post_script_name < b.front().front()->post_script_name;
  });
}

}  // namespace

std::vector<Copy> Copies(const Library& library) {
  Buckets files;
  Buckets faces;
  std::vector<std::optional<std::string>> data_of_files;
  for (const LibraryFile& file : library.files()) {
    const std::optional<std::string>& data = data_of_files.emplace_back(DataOf(file));
    if (data) files.Add(*data, &file.faces.front());
    for (const LibraryFace& face : file.faces) {
      if (face.data != kUnknownData) faces.Add(std::to_string(face.data), &face);
    }
  }
  std::vector<Copy> copies;
  for (Faces& same : files.Take()) {
    if (same.size() > 1) copies.push_back({true, std::move(same)});
  }
  for (Faces& same : faces.Take()) {
    const auto& first = data_of_files[same.front()->file];
    const bool in_like_files = first && std::all_of(same.begin(), same.end(), [&](const LibraryFace* face) {
                                 return data_of_files[face->file] == first;
                               });
    if (same.front()->file != same.back()->file && !in_like_files) copies.push_back({false, std::move(same)});
  }
  return copies;
}

std::vector<Group> Conflicts(const Library& library) {
  std::vector<Group> groups;
  for (const Faces& faces : NamedAlike(library, NameWhereDataIsKnown)) {
    const std::unordered_set<std::size_t> in_conflict = DataInConflict(faces);
    Group parts = ByData(faces);
    std::erase_if(parts, [&](const Faces& part) { return !in_conflict.contains(part.front()->data); });
    Collect(groups, std::move(parts));
  }
  SortByName(groups);
  return groups;
}

std::vector<Group> Formats(const Library& library) {
  std::vector<Group> groups;
  for (const Faces& faces : NamedAlike(library, NameFoundryAndVersion)) {
    if (ByData(faces).size() < 2) continue;  // copies, whatever their file format
    Buckets by_format;
    for (const LibraryFace* face : faces) by_format.Add(FormatOf(*face), face);
    Collect(groups, by_format.Take());
  }
  SortByName(groups);
  return groups;
}

std::vector<Group> Versions(const Library& library) {
  std::vector<Group> groups;
  for (Faces& faces : NamedAlike(library, NameAndFoundry)) {
    std::stable_sort(faces.begin(), faces.end(), [](const LibraryFace* a, const LibraryFace* b) {
      return std::is_gt(CompareVersions(a->version, b->version));
    });
    Collect(groups, Cut(faces, [](const LibraryFace& a, const LibraryFace& b) {
              return std::is_neq(CompareVersions(a.version, b.version));
            }));
  }
  SortByName(groups);
  return groups;
}

std::vector<Group> NearNames(const Library& library) {
  std::vector<Group> groups;
  for (Faces& faces : NamedAlike(library, ReducedName)) {
    std::stable_sort(faces.begin(), faces.end(), [](const LibraryFace* a, const LibraryFace* b) {
      return a->post_script_name < b->post_script_name;
    });
    Collect(groups, Cut(faces, [](const LibraryFace& a, const LibraryFace& b) {
              return a.post_script_name != b.post_script_name;
            }));
  }
  SortByName(groups);
  return groups;
}

}  // namespace quillmark::tool
