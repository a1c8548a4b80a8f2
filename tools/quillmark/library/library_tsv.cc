// The lists over a library as tab-separated values: one line for each face, or for each file of which all
// faces are copies, under one header for all lists.
#include <nlohmann/json.hpp>

#include "library/library_forms.h"
#include "output/tsv_form.h"

namespace quillmark::tool {

void WriteLibraryTsv(std::ostream& out, Library& library, const LibraryLists& lists) {
  // `place`: list, group, part, and what is copied. A file stands for all of its faces.
  const auto write_line = [&](const std::string& place, const LibraryFace& face, bool is_file) {
    auto object = FaceObject(library, face);
    if (is_file) object["face"] = "";
    out << place;
    for (const auto& value : object) {
      out << '\t' << TsvText(value.is_string() ? value.get<std::string>() : value.dump());
    }
    out << '\n';
  };
  out << "list\tgroup\tpart\tcopied\tpath\tface\tpostScriptName\tkind\tversion\tfoundry\tchecksum\t"
         "fileSize\tvariable\n";
  for (std::size_t i = 0; lists.copies && i < lists.copies->size(); ++i) {
    const Copy& copy = (*lists.copies)[i];
    const std::string place =
        "copies\t" + std::to_string(i + 1) + (copy.whole_files ? "\t1\tfile" : "\t1\tface");
    for (const LibraryFace* face : copy.faces) write_line(place, *face, copy.whole_files);
  }
  for (const GroupList& list : kGroupLists) {
    const auto& groups = lists.*list.groups;
    for (std::size_t i = 0; groups && i < groups->size(); ++i) {
      const std::string group = std::string(list.name) + '\t' + std::to_string(i + 1) + '\t';
      std::size_t part = 0;
      for (const Faces& faces : (*groups)[i]) {
        const std::string place = group + std::to_string(++part) + '\t';
        for (const LibraryFace* face : faces) write_line(place, *face, false);
      }
    }
  }
}

}  // namespace quillmark::tool
