#include "table_form.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include "display_width.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowest = 6;
constexpr const char* kBold = "\x1b[1m";
constexpr const char* kPlain = "\x1b[0m";

// Takes columns off the widest ones until the row fits, or none is wider than the narrowest.
void Narrow(std::vector<std::size_t>& widths, std::size_t width) {
  const std::size_t gaps = kGap * (widths.size() - 1);
  std::size_t total = std::accumulate(widths.begin(), widths.end(), gaps);
  while (total > width) {
    const auto widest = std::max_element(widths.begin(), widths.end());
    if (*widest <= kNarrowest) return;
    --*widest;
    --total;
  }
}

constexpr std::string_view kPrinterFont = "printerFont";

std::vector<const Field*> UsualFields(const std::vector<Face>& faces) {
  std::vector<const Field*> fields;
  for (const char* name : {"path", "face", "postScriptName", "family", "styles", "class", "foundry", "kind",
                           "version", "platform", "checksum"}) {
    fields.push_back(FindField(name));
  }
  if (std::any_of(faces.begin(), faces.end(), [](const Face& face) { return face.fond_id.has_value(); })) {
    fields.push_back(FindField("fondID"));
    fields.push_back(FindField("style"));
  }
  if (std::any_of(faces.begin(), faces.end(), [](const Face& face) { return !face.outline_file.empty(); })) {
    fields.push_back(FindField(kPrinterFont.data()));
  }
  return fields;
}

std::string Cell(const Field& field, const Face& face) {
  const bool missing = field.name == kPrinterFont && !face.outline_file.empty() && !face.outline_file_exists;
  return FieldText(field, face) + (missing ? " (missing)" : "");
}

}  // namespace

void WriteTable(std::ostream& out, const std::vector<Column>& columns,
                const std::vector<std::vector<std::string>>& rows, TerminalLook look) {
  std::vector<std::size_t> widths;
  for (const Column& column : columns) widths.push_back(DisplayWidth(column.title));
  std::vector<std::vector<std::string>> cells;
  for (const auto& row : rows) {
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      shown.push_back(Printable(row[i]));
      widths[i] = std::max(widths[i], DisplayWidth(shown[i]));
    }
    cells.push_back(std::move(shown));
  }
  if (look.columns > 0) Narrow(widths, look.columns);

  const auto line_of = [&](const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const std::string cell = columns[i].keep_end ? FitStart(row[i], widths[i]) : FitEnd(row[i], widths[i]);
      line += cell;
      if (i + 1 < columns.size()) line.append(widths[i] - DisplayWidth(cell) + kGap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
  };
  std::vector<std::string> titles;
  for (const Column& column : columns) titles.push_back(column.title);
  out << (look.bold ? kBold : "") << line_of(titles) << (look.bold ? kPlain : "") << '\n';
  for (const auto& row : cells) out << line_of(row) << '\n';
}

void WriteFaceTable(std::ostream& out, const std::vector<Face>& faces, std::vector<const Field*> fields,
                    TerminalLook look) {
  if (fields.empty()) fields = UsualFields(faces);
  std::vector<Column> columns;
  for (const Field* field : fields) columns.push_back({field->title, field->keep_end});
  std::vector<std::vector<std::string>> rows;
  for (const Face& face : faces) {
    std::vector<std::string> row;
    for (const Field* field : fields) row.push_back(Cell(*field, face));
    rows.push_back(std::move(row));
  }
  WriteTable(out, columns, rows, look);
}

}  // namespace quillmark::tool
