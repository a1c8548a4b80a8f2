// The lists over a library as one JSON object: an array a list, a line a group. Bytes that are not UTF-8
// become U+FFFD.
#include <nlohmann/json.hpp>
#include <string>

#include "library_forms.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

Json Object(const Library& library, const LibraryFace& face) {
  return {{"path", library.files()[face.file].path},
          {"face", face.index},
          {"postScriptName", face.post_script_name},
          {"kind", face.kind},
          {"version", face.version},
          {"foundry", face.foundry},
          {"checksum", Hex(face.checksum)}};
}

Json Array(const Library& library, const Faces& faces) {
  Json array = Json::array();
  for (const LibraryFace* face : faces) array.push_back(Object(library, *face));
  return array;
}

Json CopyObject(const Library& library, const Copy& copy) {
  if (!copy.whole_files) return {{"copied", "face"}, {"faces", Array(library, copy.faces)}};
  Json paths = Json::array();
  for (const LibraryFace* face : copy.faces) paths.push_back(library.files()[face->file].path);
  Faces faces;
  for (const LibraryFace& face : library.files()[copy.faces.front()->file].faces) faces.push_back(&face);
  return {{"copied", "file"}, {"paths", std::move(paths)}, {"faces", Array(library, faces)}};
}

Json GroupObject(const Library& library, const Group& group, const char* parts_name) {
  const LibraryFace& first = *group.front().front();
  Json parts = Json::array();
  for (const Faces& part : group) parts.push_back(Array(library, part));
  return {{"postScriptName", first.post_script_name}, {parts_name, std::move(parts)}};
}

template <typename Entry, typename ObjectOf>
void WriteList(std::ostream& out, const char* name, const std::vector<Entry>& list, ObjectOf object_of) {
  out << "  \"" << name << "\": [";
  const char* before = "\n    ";
  for (const Entry& entry : list) {
    out << before << object_of(entry).dump(-1, ' ', false, Json::error_handler_t::replace);
    before = ",\n    ";
  }
  out << (list.empty() ? "],\n" : "\n  ],\n");
}

}  // namespace

void WriteLibraryJson(std::ostream& out, const Library& library, const LibraryLists& lists) {
  const auto parted_by = [&library](const char* parts_name) {
    return [&library, parts_name](const Group& group) { return GroupObject(library, group, parts_name); };
  };
  out << "{\n";
  WriteList(out, "copies", lists.copies, [&](const Copy& copy) { return CopyObject(library, copy); });
  WriteList(out, "conflicts", lists.conflicts, parted_by("data"));
  WriteList(out, "versions", lists.versions, parted_by("versions"));
  if (lists.near) WriteList(out, "near", *lists.near, parted_by("names"));
  const LibraryCounts counts = library.Count();
  const Json summary = {{"files", library.files().size()},
                        {"faces", counts.faces},
                        {"nameless", counts.nameless},
                        {"links", library.link_count()}};
  out << "  \"summary\": " << summary.dump() << "\n}\n";
}

}  // namespace quillmark::tool
