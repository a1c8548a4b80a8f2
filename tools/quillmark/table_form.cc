#include "table_form.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <numeric>

#include "display_width.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowest = 6;

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

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : "; ") + text;
  return joined;
}

std::string OutlineCell(const Face& face) {
  if (face.outline_file.empty()) return {};
  return face.outline_file + (face.outline_file_exists ? "" : " (missing)");
}

}  // namespace

void WriteTable(std::ostream& out, const std::vector<Column>& columns,
                const std::vector<std::vector<std::string>>& rows, std::size_t width) {
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
  if (width > 0) Narrow(widths, width);

  const auto write = [&](const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const std::string cell = columns[i].keep_end ? FitStart(row[i], widths[i]) : FitEnd(row[i], widths[i]);
      line += cell;
      if (i + 1 < columns.size()) line.append(widths[i] - DisplayWidth(cell) + kGap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  };
  std::vector<std::string> titles;
  for (const Column& column : columns) titles.push_back(column.title);
  write(titles);
  for (const auto& row : cells) write(row);
}

void WriteFaceTable(std::ostream& out, const std::vector<Face>& faces, std::size_t width) {
  const bool fonds =
      std::any_of(faces.begin(), faces.end(), [](const Face& face) { return face.fond_id.has_value(); });
  const bool outlines =
      std::any_of(faces.begin(), faces.end(), [](const Face& face) { return !face.outline_file.empty(); });

  std::vector<Column> columns = {{"FILE", true}, {"FACE"},     {"POSTSCRIPT NAME"}, {"FAMILY"},
                                 {"STYLES"},     {"CLASS"},    {"FOUNDRY"},         {"KIND"},
                                 {"VERSION"},    {"PLATFORM"}, {"CHECKSUM"}};
  if (fonds) {
    columns.push_back({"FOND"});
    columns.push_back({"STYLE"});
  }
  if (outlines) columns.push_back({"PRINTER FONT", true});

  std::vector<std::vector<std::string>> rows;
  for (const Face& face : faces) {
    std::vector<std::string> row = {face.path,
                                    std::to_string(face.index),
                                    face.post_script_name,
                                    face.family,
                                    Joined(face.styles),
                                    face.classification,
                                    face.foundry,
                                    face.kind,
                                    face.version,
                                    face.platform,
                                    Hex(face.checksum)};
    if (fonds) {
      row.push_back(face.fond_id ? std::to_string(*face.fond_id) : "");
      row.push_back(face.style ? std::to_string(*face.style) : "");
    }
    if (outlines) row.push_back(OutlineCell(face));
    rows.push_back(std::move(row));
  }
  WriteTable(out, columns, rows, width);
}

std::size_t TerminalWidth() {
  winsize size{};
  if (::isatty(STDOUT_FILENO) == 0 || ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return 0;
  return size.ws_col;
}

}  // namespace quillmark::tool
