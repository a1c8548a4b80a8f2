// The lists over a library as tables: a row a face or file, the path last, an empty line between groups.
#include <string>

#include "library_forms.h"
#include "table_form.h"
#include "terminal.h"

namespace quillmark::tool {
namespace {

using Row = std::vector<std::string>;

void WriteSection(std::ostream& out, const std::string& title, const std::vector<Column>& columns,
                  const std::vector<Row>& rows) {
  out << title << (rows.empty() ? ": none\n" : "\n");
  if (!rows.empty()) WriteTable(out, columns, rows, OutputLook());
  out << '\n';
}

void WriteCopies(std::ostream& out, const Library& library, const std::vector<Copy>& copies) {
  std::vector<Row> rows;
  for (const Copy& copy : copies) {
    if (!rows.empty()) rows.emplace_back(5);
    for (const LibraryFace* face : copy.faces) {
      const LibraryFile& file = library.files()[face->file];
      std::string name = face->post_script_name;
      if (copy.whole_files && file.faces.size() > 1) {
        name += " and " + std::to_string(file.faces.size() - 1) + " more";
      }
      rows.push_back({name, Hex(face->checksum), copy.whole_files ? "file" : "face",
                      copy.whole_files ? "" : std::to_string(face->index), file.path});
    }
  }
  WriteSection(out, "Copies: the same data in several files",
               {{"POSTSCRIPT NAME"}, {"CHECKSUM"}, {"COPIED"}, {"FACE"}, {"FILE", true}}, rows);
}

void WriteGroups(std::ostream& out, const std::string& title, const Library& library,
                 const std::vector<Group>& groups) {
  std::vector<Row> rows;
  for (const Group& group : groups) {
    if (!rows.empty()) rows.emplace_back(7);
    for (const Faces& part : group) {
      for (const LibraryFace* face : part) {
        rows.push_back({face->post_script_name, Hex(face->checksum), face->kind, face->version, face->foundry,
                        std::to_string(face->index), library.files()[face->file].path});
      }
    }
  }
  WriteSection(
      out, title,
      {{"POSTSCRIPT NAME"}, {"CHECKSUM"}, {"KIND"}, {"VERSION"}, {"FOUNDRY"}, {"FACE"}, {"FILE", true}},
      rows);
}

}  // namespace

void WriteLibraryTables(std::ostream& out, const Library& library, const LibraryLists& lists) {
  WriteCopies(out, library, lists.copies);
  WriteGroups(out, "Conflicts: one PostScript name, different data", library, lists.conflicts);
  WriteGroups(out, "Versions: one PostScript name and foundry, newest first", library, lists.versions);
  if (lists.near) WriteGroups(out, "Near names: alike but for punctuation", library, *lists.near);
  out << "copies " << lists.copies.size() << ", conflicts " << lists.conflicts.size() << ", versions "
      << lists.versions.size();
  if (lists.near) out << ", near names " << lists.near->size();
  out << '\n';
}

}  // namespace quillmark::tool
