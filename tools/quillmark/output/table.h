// Table: rows for people, in columns that fit the terminal. A path is never cut, nor a name that would look
// like another one.
#ifndef QUILLMARK_TOOL_OUTPUT_TABLE_H_
#define QUILLMARK_TOOL_OUTPUT_TABLE_H_

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "text/terminal.h"

namespace quillmark::tool {

struct Column {
  std::string title;
  bool is_path = false;
  // 0: always shown. Other columns are left out when all their cells are empty, and when the terminal has no
  // room for them beside those of smaller rank.
  int rank = 0;
};

// Holds the text of its rows and no more.
class Table {
 public:
  explicit Table(std::vector<Column> columns);

  // As many cells as columns. A row of empty cells separates groups of rows.
  void Add(const std::vector<std::string>& row);
  // A line above the row that is added next; with one, rows are indented.
  void AddHeading(const std::string& text);
  std::size_t size() const { return rows_.size(); }
  void KeepFirst(std::size_t rows) { rows_.resize(rows); }
  void LeaveOut(std::size_t column) { widest_[column] = 0; }

  // On a terminal: columns drop out by rank, texts are shortened in the middle unless that made two names of
  // the first column, or of one of rank 0, look equal, paths never. If the paths of a last column do not fit
  // beside the columns of rank <= `rank`, each goes below its row, or, for `by_folder` where that is shorter,
  // folders become headings. Elsewhere nothing is cut, and no cell is padded to a much longer one.
  void Write(std::ostream& out, TerminalLook look, bool by_folder = false, int rank = kAnyRank) const;

 private:
  static constexpr int kAnyRank = 1000;
  using Cells = std::vector<std::string>;
  struct Layout;

  Layout Choose(std::size_t room, bool by_folder, int rank) const;
  void ChooseColumns(Layout& layout, int rank) const;
  void FindAmbiguous(Layout& layout, std::size_t shown) const;
  std::size_t InitialWidth(std::size_t column, const Layout& layout) const;
  std::size_t FolderLines() const;
  bool IsLeftOut(std::size_t column) const { return columns_[column].rank > 0 && widest_[column] == 0; }
  std::string Line(const Layout& layout, const Cells& cells) const;

  std::vector<Column> columns_;
  std::vector<std::size_t> widest_;   // cell of each column, in terminal columns; 0 where none has text
  std::size_t widest_file_name_ = 0;  // in the last column
  std::vector<std::string> rows_;     // printable cells with line feeds between them
  std::vector<std::pair<std::size_t, std::string>> headings_;  // printable, each with the row that follows it
};

// Writes rows of as many cells as columns to standard output.
void WriteTable(const std::vector<Column>& columns, const std::vector<std::vector<std::string>>& rows);

}  // namespace quillmark::tool

#endif
