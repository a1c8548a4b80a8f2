#include "output/table.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <numeric>
#include <set>

#include "text/display_width.h"
#include "text/printable.h"
#include "text/terminal_guard.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowest = 6;
constexpr std::size_t kMostPadding = 40;  // where no terminal sets the width
constexpr std::size_t kHeadingIndent = 2;
constexpr std::size_t kPathIndent = 4;
constexpr const char* kBold = "\x1b[1m";
constexpr const char* kPlain = "\x1b[0m";

constexpr char kBetweenCells = '\n';

std::vector<std::string> CellsOf(std::string_view row) {
  std::vector<std::string> cells;
  for (std::size_t end; (end = row.find(kBetweenCells)) != std::string_view::npos;
       row.remove_prefix(end + 1)) {
    cells.emplace_back(row.substr(0, end));
  }
  cells.emplace_back(row);
  return cells;
}

// The folder of a path, slash included.
std::string_view FolderOf(std::string_view path) { return path.substr(0, path.rfind('/') + 1); }

std::string_view LastCell(std::string_view row) { return row.substr(row.rfind(kBetweenCells) + 1); }

}  // namespace

// Which columns are shown, how wide, and where the path of the last column is printed.
struct Table::Layout {
  enum Place { kBeside, kBelow, kInFolder };

  std::size_t room = 0;  // columns of the terminal; 0 for no limit
  Place place = kBeside;
  bool has_headings = false;
  std::vector<std::size_t> shown;   // columns, in their order
  std::vector<std::size_t> widths;  // of these
  std::set<std::string> ambiguous;  // what different names would be cut to, which are shown whole

  std::size_t indent() const { return place == kInFolder || has_headings ? kHeadingIndent : 0; }
  std::size_t Total() const {
    const std::size_t beside = widths.size() - (place == kBelow ? 1 : 0);
    const std::size_t gaps = beside > 1 ? kGap * (beside - 1) : 0;
    return std::accumulate(widths.begin(), widths.end(), indent() + gaps);
  }
};

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)), widest_(columns_.size()) {}

void Table::Add(const std::vector<std::string>& row) {
  std::string cells;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const std::string cell = Printable(row[i]);
    if (i > 0) cells += kBetweenCells;
    cells += cell;
    widest_[i] = std::max(widest_[i], DisplayWidth(cell));
  }
  const std::string_view last = LastCell(cells);
  widest_file_name_ = std::max(widest_file_name_, DisplayWidth(last.substr(FolderOf(last).size())));
  rows_.push_back(std::move(cells));
  rows_.back().shrink_to_fit();
}

void Table::AddHeading(const std::string& text) { headings_.emplace_back(rows_.size(), Printable(text)); }

std::size_t Table::FolderLines() const {
  std::size_t lines = 0;
  std::string_view folder;
  for (const std::string& row : rows_) {
    const std::string_view next = FolderOf(LastCell(row));
    if (lines == 0 || next != folder) ++lines;
    folder = next;
  }
  return lines;
}

// The width of a column before spare room is given out or all are narrowed.
std::size_t Table::InitialWidth(std::size_t column, const Layout& layout) const {
  const std::size_t title = DisplayWidth(columns_[column].title);
  const std::size_t natural = std::max(widest_[column], title);
  if (layout.room == 0) return std::min(natural, std::max(title, kMostPadding));
  const bool is_last = column + 1 == columns_.size();
  if (!columns_[column].is_path) {
    // The column that is always there gets the most; one long text must not keep others away.
    const std::size_t share = columns_[column].rank == 0 ? layout.room / 4 : layout.room / 8;
    return std::min(natural, std::max(title, share));
  }
  if (!is_last) return std::min(natural, layout.room / 2);
  if (layout.place == Layout::kBelow) return 0;
  if (layout.place == Layout::kInFolder) return std::min(std::max(widest_file_name_, title), layout.room / 3);
  return natural;
}

// Chooses columns in the order of their ranks while there is room; those beyond `rank` only when all others
// have room. The rest of the width goes to columns whose cells need it.
void Table::ChooseColumns(Layout& layout, int rank) const {
  int last_rank = kAnyRank;  // of columns that may be chosen
  std::vector<std::size_t> by_rank(columns_.size());
  std::iota(by_rank.begin(), by_rank.end(), std::size_t{0});
  std::stable_sort(by_rank.begin(), by_rank.end(),
                   [this](std::size_t a, std::size_t b) { return columns_[a].rank < columns_[b].rank; });
  for (const std::size_t column : by_rank) {
    if (IsLeftOut(column) || columns_[column].rank > last_rank) continue;
    layout.shown.push_back(column);
    layout.widths.push_back(InitialWidth(column, layout));
    if (columns_[column].rank > 0 && layout.room > 0 && layout.Total() > layout.room) {
      layout.shown.pop_back();
      layout.widths.pop_back();
      last_rank = std::max(rank, columns_[column].rank - 1);
    }
  }
  std::sort(layout.shown.begin(), layout.shown.end());
  for (std::size_t i = 0; i < layout.shown.size(); ++i) {
    layout.widths[i] = InitialWidth(layout.shown[i], layout);
  }
  if (layout.room == 0) return;
  for (std::size_t i = 0; i < layout.shown.size(); ++i) {
    const std::size_t column = layout.shown[i];
    if (columns_[column].is_path || layout.Total() >= layout.room) continue;
    const std::size_t wanted = std::max(widest_[column], layout.widths[i]);
    layout.widths[i] += std::min(wanted - layout.widths[i], layout.room - layout.Total());
  }
  while (layout.Total() > layout.room) {
    std::size_t* widest = nullptr;
    for (std::size_t i = 0; i < layout.shown.size(); ++i) {
      if (columns_[layout.shown[i]].is_path || layout.widths[i] <= kNarrowest) continue;
      if (widest == nullptr || layout.widths[i] > *widest) widest = &layout.widths[i];
    }
    if (widest == nullptr) return;
    --*widest;
  }
}

Table::Layout Table::Choose(std::size_t room, bool by_folder, int rank) const {
  Layout layout;
  layout.room = room;
  layout.has_headings = !headings_.empty();
  if (room > 0 && columns_.size() > 1 && columns_.back().is_path) {
    Layout wanted = layout;  // the columns beside a whole path
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (columns_[i].rank > rank || IsLeftOut(i)) continue;
      const std::size_t natural = std::max(widest_[i], DisplayWidth(columns_[i].title));
      wanted.widths.push_back(columns_[i].is_path ? InitialWidth(i, layout)
                                                  : std::min(natural, room * 3 / 10));
    }
    if (wanted.Total() > room) {
      layout.place = by_folder && 2 * FolderLines() <= rows_.size() ? Layout::kInFolder : Layout::kBelow;
    }
  }
  ChooseColumns(layout, rank);
  for (std::size_t i = 0; room > 0 && i < layout.shown.size(); ++i) {
    const std::size_t column = layout.shown[i];
    const bool holds_names = !columns_[column].is_path && (column == 0 || columns_[column].rank == 0);
    if (holds_names && widest_[column] > layout.widths[i]) FindAmbiguous(layout, i);
  }
  return layout;
}

void Table::FindAmbiguous(Layout& layout, std::size_t shown) const {
  const auto name_in = [&](std::size_t row) { return CellsOf(rows_[row])[layout.shown[shown]]; };
  std::map<std::string, std::size_t> rows;  // the first one by what its name is cut to
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const std::string name = name_in(row);
    std::string cut = FitMiddle(name, layout.widths[shown]);
    if (cut == name && name.find(kEllipsis) == std::string::npos) continue;
    const auto [first, is_new] = rows.emplace(std::move(cut), row);
    if (!is_new && name_in(first->second) != name) layout.ambiguous.insert(first->first);
  }
}

std::string Table::Line(const Layout& layout, const Cells& cells) const {
  const auto trim = [](std::string& line) { line.erase(line.find_last_not_of(" \n") + 1); };
  std::string line(layout.indent(), ' ');
  std::size_t next = layout.indent();  // where the next column begins
  for (std::size_t i = 0; i < layout.shown.size(); ++i) {
    const Column& column = columns_[layout.shown[i]];
    std::string cell = cells[layout.shown[i]];
    const bool is_last = i + 1 == layout.shown.size();
    if (is_last && column.is_path) {
      if (layout.place == Layout::kInFolder) cell.erase(0, FolderOf(cell).size());
      const bool is_below = layout.place == Layout::kBelow ||
                            (layout.place == Layout::kInFolder && next + DisplayWidth(cell) > layout.room);
      if (is_below && !cell.empty()) {
        trim(line);
        line += '\n' + std::string(kPathIndent, ' ');
      }
    } else if (!column.is_path && layout.room > 0) {
      std::string cut = FitMiddle(cell, layout.widths[i]);
      if (!layout.ambiguous.contains(cut)) cell = std::move(cut);
    }
    line += cell;
    if (is_last) {
      if (cell.empty()) trim(line);
      break;
    }
    const std::size_t width = DisplayWidth(cell);
    next += layout.widths[i] + kGap;
    if (width <= layout.widths[i]) {
      line.append(layout.widths[i] - width + kGap, ' ');
    } else if (layout.room > 0) {
      line += '\n' + std::string(next, ' ');
    } else {
      line.append(kGap, ' ');
    }
  }
  return line;
}

void Table::Write(std::ostream& out, TerminalLook look, bool by_folder, int rank) const {
  const Layout layout = Choose(look.columns, by_folder, rank);
  Cells titles;
  for (const Column& column : columns_) titles.push_back(column.title);
  if (look.bold) WriteControls(out, kBold);
  out << Line(layout, titles);
  if (look.bold) WriteControls(out, kPlain);
  out << '\n';

  std::string_view folder;
  auto heading = headings_.begin();
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    for (; heading != headings_.end() && heading->first == row; ++heading) {
      out << (look.columns == 0 ? heading->second : FitMiddle(heading->second, look.columns)) << '\n';
    }
    const std::string_view next = FolderOf(LastCell(rows_[row]));
    if (layout.place == Layout::kInFolder && (row == 0 || next != folder)) {
      out << (next.empty() ? "./" : next) << '\n';
    }
    folder = next;
    out << Line(layout, CellsOf(rows_[row])) << '\n';
  }
}

void WriteTable(const std::vector<Column>& columns, const std::vector<std::vector<std::string>>& rows) {
  Table table(columns);
  for (const auto& row : rows) table.Add(row);
  table.Write(std::cout, OutputLook());
}

}  // namespace quillmark::tool
