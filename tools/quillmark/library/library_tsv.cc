// The lists over a library as tab-separated values: one line for each face, or for each file of which all
// faces are copies, under one header for all lists.
#include <string>

#include "library/library_forms.h"
#include "output/tsv_form.h"

namespace quillmark::tool {
namespace {

class TsvWriter {
 public:
  TsvWriter(std::ostream& out, const Library& library, LibraryDetails& details)
      : out_(out), library_(library), details_(details) {
    out_ << "list\tgroup\tpart\tcopied\tpath\tface\tpostScriptName\tkind\tversion\tfoundry\tchecksum\t"
            "fileSize\tvariable\n";
  }

  void Write(const std::vector<Copy>& copies) {
    std::size_t number = 0;
    for (const Copy& copy : copies) {
      const std::string group = "copies\t" + std::to_string(++number);
      for (const LibraryFace* face : copy.faces) {
        const std::string index = copy.whole_files ? "" : std::to_string(face->index);
        WriteLine(group + (copy.whole_files ? "\t1\tfile" : "\t1\tface"), *face, index);
      }
    }
  }

  void Write(const std::string& list, const std::optional<std::vector<Group>>& groups) {
    if (!groups) return;
    for (std::size_t group = 0; group < groups->size(); ++group) {
      const std::string prefix = list + '\t' + std::to_string(group + 1) + '\t';
      for (std::size_t part = 0; part < (*groups)[group].size(); ++part) {
        for (const LibraryFace* face : (*groups)[group][part]) {
          WriteLine(prefix + std::to_string(part + 1) + '\t', *face, std::to_string(face->index));
        }
      }
    }
  }

 private:
  void WriteLine(const std::string& place, const LibraryFace& face, const std::string& index) {
    out_ << place;
    for (const std::string& text :
         {library_.files()[face.file].path, index, face.post_script_name, face.kind, face.version,
          face.foundry, Hex(face.checksum), std::to_string(details_.FileSize(face)),
          std::string(details_.IsVariable(face) ? "true" : "false")}) {
      out_ << '\t' << TsvText(text);
    }
    out_ << '\n';
  }

  std::ostream& out_;
  const Library& library_;
  LibraryDetails& details_;
};

}  // namespace

void WriteLibraryTsv(std::ostream& out, const Library& library, LibraryDetails& details,
                     const LibraryLists& lists) {
  TsvWriter writer(out, library, details);
  if (lists.copies) writer.Write(*lists.copies);
  writer.Write("conflicts", lists.conflicts);
  writer.Write("formats", lists.formats);
  writer.Write("versions", lists.versions);
  writer.Write("near", lists.near);
}

}  // namespace quillmark::tool
