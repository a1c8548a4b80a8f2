#include "output/table_form.h"

#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "output/table.h"
#include "text/terminal.h"

namespace quillmark::tool {
namespace {

struct UsualColumn {
  std::string_view field;
  int rank;
};

// In the order of the table's columns.
constexpr UsualColumn kUsual[] = {
    {"postScriptName", 0}, {"family", 6},       {"styles", 5}, {"version", 2},  {"foundry", 4},
    {"checksum", 3},       {"class", 7},        {"kind", 8},   {"platform", 9}, {"fondID", 10},
    {"style", 11},         {"printerFont", 12}, {"face", 1},   {"path", 0},
};
// Paths move to lines of their own rather than drop a column up to this rank.
constexpr int kLastRankBesidePath = 4;
constexpr std::string_view kFace = "face";

std::vector<const Field*> UsualFields() {
  std::vector<const Field*> fields;
  for (const UsualColumn& usual : kUsual) fields.push_back(FindField(std::string(usual.field)));
  return fields;
}

std::vector<Column> ColumnsOf(const std::vector<const Field*>& fields, bool are_usual) {
  std::vector<Column> columns;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    Column column{fields[i]->title, fields[i]->use == FieldUse::kPath, are_usual ? kUsual[i].rank : 0};
    if (are_usual && fields[i]->name == kFace) column.title = "#";
    columns.push_back(std::move(column));
  }
  return columns;
}

std::string Cell(const Field& field, const Face& face, bool is_usual) {
  const std::string_view name = field.name;
  if (name == "printerFont" && !face.outline_file.empty() && !face.outline_file_exists) {
    return face.outline_file + " (missing)";
  }
  if (is_usual && name == "postScriptName" && face.post_script_name.empty() && !face.family.empty()) {
    return "(" + face.family + ")";
  }
  return FieldText(field, face);
}

// Keeps the cells of a face, not the face.
class TableWriter : public FaceWriter {
 public:
  TableWriter(std::ostream& out, std::vector<const Field*> fields, bool wide)
      : out_(out),
        wide_(wide),
        are_usual_(fields.empty()),
        fields_(are_usual_ ? UsualFields() : std::move(fields)),
        table_(ColumnsOf(fields_, are_usual_)) {}

  // All of them, or none when there is too little memory.
  void Add(std::vector<Face> faces, FontArray) override {
    const std::size_t known = table_.size();
    try {
      for (const Face& face : faces) {
        std::vector<std::string> row;
        for (const Field* field : fields_) row.push_back(Cell(*field, face, are_usual_));
        table_.Add(row);
      }
    } catch (const std::bad_alloc&) {
      table_.KeepFirst(known);
      throw;
    }
    for (const Face& face : faces) has_several_ |= face.index > 0;
  }

  void Finish() override {
    if (table_.size() == 0) return;
    for (std::size_t i = 0; are_usual_ && !has_several_ && i < fields_.size(); ++i) {
      if (fields_[i]->name == kFace) table_.LeaveOut(i);
    }
    TerminalLook look = OutputLook();
    if (wide_) look.columns = 0;
    table_.Write(out_, look, are_usual_, kLastRankBesidePath);
  }

 private:
  std::ostream& out_;
  const bool wide_, are_usual_;
  const std::vector<const Field*> fields_;
  Table table_;
  bool has_several_ = false;  // faces in one file
};

}  // namespace

std::unique_ptr<FaceWriter> MakeTableWriter(std::ostream& out, std::vector<const Field*> fields, bool wide) {
  return std::make_unique<TableWriter>(out, std::move(fields), wide);
}

}  // namespace quillmark::tool
