// The lists over a library as one JSON object: one array for each list, one line for each group. Bytes that
// are not UTF-8 become U+FFFD.
#include <nlohmann/json.hpp>
#include <string>

#include "library/library_forms.h"
#include "output/json_form.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

class LibraryJsonWriter {
 public:
  LibraryJsonWriter(std::ostream& out, LibraryDetails& details) : out_(out), details_(details) {}

  void Write(const LibraryLists& lists) {
    if (lists.copies)
      WriteList("copies", *lists.copies, [this](const Copy& copy) { return CopyObject(copy); });
    for (const GroupList& list : kGroupLists) {
      const auto& groups = lists.*list.groups;
      if (!groups) continue;
      WriteList(list.name, *groups, [&](const Group& group) { return GroupObject(group, list.parts); });
    }
  }

 private:
  Json Array(const Faces& faces) {
    Json array = Json::array();
    for (const LibraryFace* face : faces) array.push_back(FaceObject(details_, *face));
    return array;
  }

  Json CopyObject(const Copy& copy) {
    if (!copy.whole_files) return {{"copied", "face"}, {"faces", Array(copy.faces)}};
    Json paths = Json::array();
    Json sizes = Json::array();
    for (const LibraryFace* face : copy.faces) {
      paths.push_back(details_.library().files()[face->file].path);
      sizes.push_back(details_.FileSize(*face));
    }
    Faces faces;
    for (const LibraryFace& face : details_.library().files()[copy.faces.front()->file].faces)
      faces.push_back(&face);
    return {{"copied", "file"},
            {"paths", std::move(paths)},
            {"faces", Array(faces)},
            {"fileSizes", std::move(sizes)}};
  }

  Json GroupObject(const Group& group, const char* parts_name) {
    Json parts = Json::array();
    for (const Faces& part : group) parts.push_back(Array(part));
    return {{"postScriptName", group.front().front()->post_script_name}, {parts_name, std::move(parts)}};
  }

  template <typename Entry, typename ObjectOf>
  void WriteList(const char* name, const std::vector<Entry>& list, ObjectOf object_of) {
    out_ << "  \"" << name << "\": [";
    const char* before = "\n    ";
    for (const Entry& entry : list) {
      out_ << before << JsonText(object_of(entry));
      before = ",\n    ";
    }
    out_ << (list.empty() ? "],\n" : "\n  ],\n");
  }

  std::ostream& out_;
  LibraryDetails& details_;
};

}  // namespace

Json FaceObject(LibraryDetails& details, const LibraryFace& face) {
  return {{"path", details.library().files()[face.file].path},
          {"face", face.index},
          {"postScriptName", face.post_script_name},
          {"kind", face.kind},
          {"version", face.version},
          {"foundry", face.foundry},
          {"checksum", Hex(face.checksum)},
          {"fileSize", details.FileSize(face)},
          {"variable", face.is_variable}};
}

void WriteLibraryJson(std::ostream& out, LibraryDetails& details, const LibraryLists& lists) {
  out << "{\n";
  LibraryJsonWriter(out, details).Write(lists);
  const Library& library = details.library();
  const LibraryCounts counts = library.Count();
  const Json summary = {{"files", library.files().size()},
                        {"faces", counts.faces},
                        {"nameless", counts.nameless},
                        {"links", library.link_count()},
                        {"namesWithoutLetters", counts.names_without_letters}};
  out << "  \"summary\": " << summary.dump() << "\n}\n";
}

}  // namespace quillmark::tool
