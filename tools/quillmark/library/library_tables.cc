// The lists over a library as tables: first copies and conflicts, then what may be intended. The heading of a
// group has its name and what all its faces share; its rows show where they differ, the path last.
#include <algorithm>
#include <cstdio>
#include <string>

#include "library/library_forms.h"
#include "output/table.h"
#include "text/terminal.h"

namespace quillmark::tool {
namespace {

// The cells that a row can have besides its path, in the order of the columns.
enum Cell { kName, kChecksum, kVersion, kKind, kFoundry, kFace, kSize, kCellCount };
constexpr const char* kTitles[kCellCount] = {"POSTSCRIPT NAME", "CHECKSUM", "VERSION", "KIND",
                                             "FOUNDRY",         "FACE",     "SIZE"};
using Cells = std::vector<std::string>;

// "757 kB"
std::string HumanSize(std::uint64_t bytes) {
  if (bytes < 1000) return std::to_string(bytes) + " B";
  auto size = static_cast<double>(bytes) / 1000;
  const char* const units[] = {"kB", "MB", "GB", "TB"};
  std::size_t unit = 0;
  for (; size >= 999.5 && unit + 1 < std::size(units); ++unit) size /= 1000;
  char text[32];
  std::snprintf(text, sizeof text, size < 9.95 ? "%.1f %s" : "%.0f %s", size, units[unit]);
  return text;
}

struct TableGroup {
  std::string name;
  std::vector<Cells> rows;  // of kCellCount cells and the path
};

class LibraryTableWriter {
 public:
  LibraryTableWriter(std::ostream& out, Library& library) : out_(out), library_(library) {}

  void Write(const std::string& name, const std::string& meaning,
             const std::optional<std::vector<Group>>& groups, const std::vector<Cell>& cells) {
    if (!groups) return;
    std::vector<TableGroup> shown;
    for (const Group& group : *groups) {
      TableGroup& last = shown.emplace_back();
      last.name = group.front().front()->post_script_name;
      for (const Faces& part : group) {
        for (const LibraryFace* face : part) AddRow(last, *face, cells);
      }
    }
    WriteSection(name, meaning, std::move(shown));
  }

  void Write(const std::vector<Copy>& copies) {
    std::vector<TableGroup> shown;
    std::uint64_t spare_bytes = 0;
    for (const Copy& copy : copies) {
      const std::size_t others = library_.files()[copy.faces.front()->file].faces.size() - 1;
      TableGroup& last = shown.emplace_back();
      last.name = copy.faces.front()->post_script_name;
      if (copy.whole_files && others > 0) last.name += " and " + std::to_string(others) + " more";
      if (!copy.whole_files) last.name += ", in files that differ otherwise";
      for (const LibraryFace* face : copy.faces) {
        AddRow(last, *face,
               copy.whole_files ? std::vector{kVersion, kKind, kSize}
                                : std::vector{kVersion, kKind, kFace, kSize});
        if (copy.whole_files && face != copy.faces.front()) spare_bytes += library_.FileSize(*face);
      }
    }
    const std::string spare =
        spare_bytes == 0 ? "" : ", " + HumanSize(spare_bytes) + " besides the first of each";
    WriteSection("Copies", "the same data in several files" + spare, std::move(shown));
  }

  void WriteCounts(const LibraryLists& lists) {
    std::string counts;
    const auto add = [&counts](const char* name, const auto& list) {
      if (list) counts += (counts.empty() ? "" : ", ") + std::string(name) + std::to_string(list->size());
    };
    add("conflicts ", lists.conflicts);
    add("formats ", lists.formats);
    add("versions ", lists.versions);
    add("copies ", lists.copies);
    add("near names ", lists.near);
    if (!counts.empty()) out_ << counts << '\n';
  }

 private:
  std::string Text(const LibraryFace& face, Cell cell) {
    if (cell == kName) return face.post_script_name;
    if (cell == kChecksum) return Hex(face.checksum);
    if (cell == kVersion) return face.version;
    if (cell == kKind) return face.kind + (face.is_variable ? ", variable" : "");
    if (cell == kFoundry) return face.foundry;
    if (cell == kSize) return HumanSize(library_.FileSize(face));
    return library_.files()[face.file].faces.size() > 1 ? std::to_string(face.index) : "";  // kFace
  }

  void AddRow(TableGroup& group, const LibraryFace& face, const std::vector<Cell>& cells) {
    Cells row(kCellCount);
    for (const Cell cell : cells) row[cell] = Text(face, cell);
    row.push_back(library_.files()[face.file].path);
    group.rows.push_back(std::move(row));
  }

  // Moves the group's name, and the cells that all its rows share, into its heading.
  static std::string TakeHeading(TableGroup& group) {
    std::string shared;
    for (const Cell cell : {kVersion, kKind, kFoundry}) {
      const std::string text = group.rows.front()[cell];
      const bool is_shared = std::all_of(group.rows.begin(), group.rows.end(),
                                         [&](const Cells& row) { return row[cell] == text; });
      if (!is_shared) continue;
      for (Cells& row : group.rows) row[cell].clear();
      if (!text.empty() && text != "--") shared += (shared.empty() ? "" : ", ") + text;
    }
    const std::string name = group.name.empty() ? "(no PostScript name)" : group.name;
    return shared.empty() ? name : name + "  (" + shared + ')';
  }

  void WriteSection(const std::string& name, const std::string& meaning, std::vector<TableGroup> groups) {
    if (groups.empty()) {
      out_ << name << ": none\n\n";
      return;
    }
    std::vector<Column> columns;
    for (const char* title : kTitles) columns.push_back({title, false, 1});
    columns.push_back({"FILE", true});
    Table table(columns);
    for (TableGroup& group : groups) {
      table.AddHeading(TakeHeading(group));
      for (const Cells& row : group.rows) table.Add(row);
    }
    out_ << name << ": " << groups.size() << " (" << meaning << ")\n";
    table.Write(out_, OutputLook());
    out_ << '\n';
  }

  std::ostream& out_;
  Library& library_;
};

}  // namespace

void WriteLibraryTables(std::ostream& out, Library& library, const LibraryLists& lists) {
  LibraryTableWriter writer(out, library);
  writer.Write("Conflicts", "one PostScript name, different data", lists.conflicts,
               {kChecksum, kVersion, kKind, kFoundry, kFace, kSize});
  writer.Write("Formats", "one font in several formats", lists.formats,
               {kVersion, kKind, kFoundry, kFace, kSize});
  writer.Write("Versions", "one font in several versions, newest first", lists.versions,
               {kVersion, kKind, kFoundry, kFace, kSize});
  if (lists.copies) writer.Write(*lists.copies);
  writer.Write("Near names", "alike but for punctuation", lists.near,
               {kName, kVersion, kKind, kFoundry, kFace, kSize});
  writer.WriteCounts(lists);
}

}  // namespace quillmark::tool
