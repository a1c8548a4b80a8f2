// The lists over a library as one JSON object: one array for each list, one line for each group. Bytes that
// are not UTF-8 become U+FFFD.
#include <nlohmann/json.hpp>

#include "library/library_forms.h"
#include "output/json_form.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

Json Array(Library& library, const Faces& faces) {
  Json array = Json::array();
  for (const LibraryFace* face : faces) array.push_back(FaceObject(library, *face));
  return array;
}

Json CopyObject(Library& library, const Copy& copy) {
  if (!copy.whole_files) return {{"copied", "face"}, {"faces", Array(library, copy.faces)}};
  Json paths = Json::array();
  Json sizes = Json::array();
  for (const LibraryFace* face : copy.faces) {
    paths.push_back(library.files()[face->file].path);
    sizes.push_back(library.FileSize(*face));
  }
  Faces faces;
  for (const LibraryFace& face : library.files()[copy.faces.front()->file].faces) faces.push_back(&face);
  return {{"copied", "file"},
          {"paths", std::move(paths)},
          {"faces", Array(library, faces)},
          {"fileSizes", std::move(sizes)}};
}

Json GroupObject(Library& library, const Group& group, const char* parts_name) {
  Json parts = Json::array();
  for (const Faces& part : group) parts.push_back(Array(library, part));
  return {{"postScriptName", group.front().front()->post_script_name}, {parts_name, std::move(parts)}};
}

template <typename Entry, typename ObjectOf>
void WriteList(std::ostream& out, const char* name, const std::optional<std::vector<Entry>>& list,
               ObjectOf object_of) {
  if (!list) return;
  out << "  \"" << name << "\": ";
  JsonArray array(out, "  ");
  for (const Entry& entry : *list) array.Add(JsonText(object_of(entry)));
  array.Finish(",\n");
}

}  // namespace

Json FaceObject(Library& library, const LibraryFace& face) {
  return {{"path", library.files()[face.file].path},
          {"face", face.index},
          {"postScriptName", face.post_script_name},
          {"kind", face.kind},
          {"version", face.version},
          {"foundry", face.foundry},
          {"checksum", Hex(face.checksum)},
          {"fileSize", library.FileSize(face)},
          {"variable", face.is_variable}};
}

void WriteLibraryJson(std::ostream& out, Library& library, const LibraryLists& lists) {
  out << "{\n";
  WriteList(out, "copies", lists.copies, [&](const Copy& copy) { return CopyObject(library, copy); });
  for (const GroupList& list : kGroupLists) {
    WriteList(out, list.name, lists.*list.groups,
              [&](const Group& group) { return GroupObject(library, group, list.parts); });
  }
  const LibraryCounts counts = library.Count();
  const Json summary = {{"files", library.files().size()},
                        {"faces", counts.faces},
                        {"nameless", counts.nameless},
                        {"links", library.link_count()},
                        {"namesWithoutLetters", counts.names_without_letters}};
  out << "  \"summary\": " << summary.dump() << "\n}\n";
}

}  // namespace quillmark::tool
