// FaceRow: a face as a catalogue keeps it: what identify shows of it, and what foundry, class and style are
// told from, so that they can be told anew without the font.
#ifndef QUILLMARK_TOOL_CATALOGUE_FACE_ROWS_H_
#define QUILLMARK_TOOL_CATALOGUE_FACE_ROWS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/database.h"
#include "faces/face.h"

namespace quillmark::tool {

// Of every field of a row.
inline constexpr FaceNeeds kRowNeeds = {kEveryNeed.attributes | kVariationAxes, true, true};

struct FaceRow {
  Face face;  // without its path
  std::string maker_text;
  std::uint32_t file_creator = 0, outline_creator = 0;
  std::int32_t fond_id = -1, style = 0;  // as in QM_FontSpecifier
  bool is_variable = false;

  bool Equals(const FaceRow& other) const;
};

std::vector<FaceRow> RowsOf(const std::vector<Face>& faces, const QM_FontArray& array);

// An array of the face, from which the stored forms are written.
FontArray ArrayOf(const FaceRow& row);

// Tells foundry, class and styles anew. False when they are as they were.
bool DeriveAnew(FaceRow& row);

// From the text of the column `styles`; none from any other.
std::vector<std::string> StoredStyles(const std::string& text);

// What near names have in common: the loose form of PostScript names in lower-case ASCII; empty for a name
// without ASCII letters and digits.
std::string LooseName(const std::string& name);
// Names of one sum may still differ. Nothing for an empty name.
std::optional<std::int64_t> SumOf(const std::string& loose_name);

// Reads and writes the rows of files.
class FaceTable {
 public:
  explicit FaceTable(Database& database);

  std::vector<FaceRow> Read(std::int64_t file);  // in the order of the faces
  std::optional<FaceRow> Read(std::int64_t file, std::int64_t face);
  // Of a file that has none.
  void Add(std::int64_t file, const std::vector<FaceRow>& rows);
  // In place of those that the file has.
  void Replace(std::int64_t file, const std::vector<FaceRow>& rows);
  void WriteDerived(std::int64_t file, const FaceRow& row);

 private:
  std::int64_t MakerOf(const std::string& text);

  Database& database_;
  Statement read_, read_one_, insert_, remove_, derived_, find_maker_, add_maker_;
  std::string last_maker_;
  std::int64_t last_maker_id_ = 0;  // 0 for none
};

}  // namespace quillmark::tool

#endif
