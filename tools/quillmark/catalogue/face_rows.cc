#include "catalogue/face_rows.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "analysis/name_match.h"
#include "api/font_array.h"
#include "faces/attributes.h"
#include "platform/byte_reader.h"
#include "platform/crc32.h"
#include "platform/text/ascii_case.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::json;

// Styles as a JSON array; nothing without any.
std::optional<std::string> StylesText(const std::vector<std::string>& styles) {
  if (styles.empty()) return std::nullopt;
  return Json(styles).dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Most faces have their PostScript name as display name, and their full name on Windows, too.
std::optional<std::string> Unless(const std::string& usual, const std::string& name) {
  if (name == usual) return std::nullopt;
  return name;
}

constexpr const char kFacesOfFile[] = R"(
SELECT face, post_script_name, family, full_name, display_name, windows_full_name, kind, version, platform, foundry,
       class, styles, checksum, legacy_checksum, kerning_checksum, outline_file_size, printer_font, printer_font_exists,
       fond_id, style, (SELECT text FROM makers WHERE id = maker), file_creator, outline_creator, is_variable
FROM faces WHERE file = ?)";

constexpr const char kInsert[] = R"(
INSERT INTO faces (file, face, post_script_name, family, full_name, display_name, windows_full_name, kind, version,
                   platform, foundry, class, styles, checksum, legacy_checksum, kerning_checksum, outline_file_size,
                   printer_font, printer_font_exists, fond_id, style, maker, file_creator, outline_creator, loose_name,
                   is_variable)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?))";

FaceRow RowIn(const Statement& found) {
  FaceRow row;
  Face& face = row.face;
  const auto number = [&](int column) { return static_cast<std::uint32_t>(found.Integer(column)); };
  face.index = number(0);
  face.post_script_name = found.Text(1);
  face.family = found.Text(2);
  face.full_name = found.Text(3);
  face.display_name = found.IsNull(4) ? face.post_script_name : found.Text(4);
  face.windows_full_name = found.IsNull(5) ? face.full_name : found.Text(5);
  face.kind = found.Text(6);
  face.version = found.Text(7);
  face.platform = found.Text(8);
  face.foundry = found.Text(9);
  face.classification = found.Text(10);
  if (!found.IsNull(11)) face.styles = StoredStyles(found.Text(11));
  face.checksum = number(12);
  face.legacy_checksum = number(13);
  face.kerning_checksum = number(14);
  face.outline_file_size = number(15);
  face.outline_file = found.Text(16);
  face.outline_file_exists = found.Integer(17) != 0;
  row.fond_id = found.IsNull(18) ? -1 : static_cast<std::int32_t>(found.Integer(18));
  row.style = static_cast<std::int32_t>(found.Integer(19));
  if (row.fond_id >= 0) {
    face.fond_id = row.fond_id;
    face.style = row.style;
  }
  row.maker_text = found.Text(20);
  row.file_creator = number(21);
  row.outline_creator = number(22);
  row.is_variable = found.Integer(23) != 0;
  row.face.variable = row.is_variable;
  return row;
}

auto Parts(const FaceRow& row) {
  const Face& face = row.face;
  return std::tie(face.index, face.post_script_name, face.family, face.full_name, face.display_name,
                  face.windows_full_name, face.kind, face.version, face.platform, face.foundry,
                  face.classification, face.styles, face.checksum, face.legacy_checksum,
                  face.kerning_checksum, face.outline_file_size, face.outline_file, face.outline_file_exists,
                  row.fond_id, row.style, row.is_variable, row.maker_text, row.file_creator,
                  row.outline_creator);
}

}  // namespace

std::vector<std::string> StoredStyles(const std::string& text) {
  std::vector<std::string> styles;
  const Json list = Json::parse(text, nullptr, false);
  if (!list.is_array()) return styles;
  for (const Json& style : list) {
    if (style.is_string()) styles.push_back(style.get<std::string>());
  }
  return styles;
}

std::string LooseName(const std::string& name) {
  std::string loose = GFontToolUtils::StripCharsAndNormalizeString(name);
  for (char& c : loose) c = ToLowerAscii(c);
  return loose;
}

std::optional<std::int64_t> SumOf(const std::string& loose_name) {
  if (loose_name.empty()) return std::nullopt;
  return static_cast<std::int32_t>(Crc32(0, AsBytes(loose_name)));  // signed: takes fewer bytes
}

bool FaceRow::Equals(const FaceRow& other) const { return Parts(*this) == Parts(other); }

std::vector<FaceRow> RowsOf(const std::vector<Face>& faces, const QM_FontArray& array) {
  std::vector<FaceRow> rows;
  rows.reserve(faces.size());
  for (const Face& face : faces) {
    const QM_FontSpecifier& specifier = array.view(face.index);
    rows.push_back({face, specifier.foundry.str(), specifier.fileCreator, specifier.outlineFileCreator,
                    specifier.fondResourceID, specifier.style, specifier.has_variation_axes});
  }
  return rows;
}

FontArray ArrayOf(const FaceRow& row) {
  QM_FontSpecifier specifier;
  for (const TextAttribute& text : kTextAttributes) specifier.*text.in_array = row.face.*text.in_face;
  for (const NumberAttribute& number : kNumberAttributes)
    specifier.*number.in_array = row.face.*number.in_face;
  specifier.foundry = row.maker_text;
  specifier.fileCreator = row.file_creator;
  specifier.outlineFileCreator = row.outline_creator;
  specifier.fondResourceID = row.fond_id;
  specifier.style = row.style;
  specifier.attributes = QM_ATTRIBUTES_ALL;
  FontArray array(new QM_FontArray);
  array->push_back(std::move(specifier));
  return array;
}

bool DeriveAnew(FaceRow& row) {
  Face& face = row.face;
  const FontArray array = ArrayOf(row);
  Face derived = FacesOf(array.get(), {}).front();
  if (face.foundry == derived.foundry && face.classification == derived.classification &&
      face.styles == derived.styles) {
    return false;
  }
  face.foundry = std::move(derived.foundry);
  face.classification = std::move(derived.classification);
  face.styles = std::move(derived.styles);
  return true;
}

FaceTable::FaceTable(Database& database)
    : database_(database),
      read_(database, (std::string(kFacesOfFile) + " ORDER BY face").c_str()),
      read_one_(database, (std::string(kFacesOfFile) + " AND face = ?").c_str()),
      insert_(database, kInsert),
      remove_(database, "DELETE FROM faces WHERE file = ?"),
      derived_(database, "UPDATE faces SET foundry = ?, class = ?, styles = ? WHERE file = ? AND face = ?"),
      find_maker_(database, "SELECT id FROM makers WHERE text = ?"),
      add_maker_(database, "INSERT INTO makers (text) VALUES (?)") {}

std::vector<FaceRow> FaceTable::Read(std::int64_t file) {
  std::vector<FaceRow> rows;
  read_.With(file);
  while (read_.Step()) rows.push_back(RowIn(read_));
  read_.Reset();
  return rows;
}

std::optional<FaceRow> FaceTable::Read(std::int64_t file, std::int64_t face) {
  std::optional<FaceRow> row;
  if (read_one_.With(file, face).Step()) row = RowIn(read_one_);
  read_one_.Reset();
  return row;
}

void FaceTable::Replace(std::int64_t file, const std::vector<FaceRow>& rows) {
  remove_.Run(file);
  Add(file, rows);
}

void FaceTable::Add(std::int64_t file, const std::vector<FaceRow>& rows) {
  for (const FaceRow& row : rows) {
    const Face& face = row.face;
    const bool has_printer_font = !face.outline_file.empty();
    const auto printer_font = has_printer_font ? std::optional(Blob{face.outline_file}) : std::nullopt;
    const auto exists =
        has_printer_font ? std::optional<std::int64_t>(face.outline_file_exists) : std::nullopt;
    const auto number = [](std::uint32_t value) { return std::int64_t{value}; };
    insert_.Run(
        file, number(face.index), std::string_view(face.post_script_name), std::string_view(face.family),
        std::string_view(face.full_name), Unless(face.post_script_name, face.display_name),
        Unless(face.full_name, face.windows_full_name), std::string_view(face.kind),
        std::string_view(face.version), std::string_view(face.platform), std::string_view(face.foundry),
        std::string_view(face.classification), StylesText(face.styles), number(face.checksum),
        number(face.legacy_checksum), number(face.kerning_checksum), number(face.outline_file_size),
        printer_font, exists, row.fond_id == -1 ? std::nullopt : std::optional<std::int64_t>(row.fond_id),
        std::int64_t{row.style}, MakerOf(row.maker_text), number(row.file_creator),
        number(row.outline_creator), SumOf(LooseName(face.post_script_name)), std::int64_t{row.is_variable});
  }
}

void FaceTable::WriteDerived(std::int64_t file, const FaceRow& row) {
  derived_.Run(std::string_view(row.face.foundry), std::string_view(row.face.classification),
               StylesText(row.face.styles), file, std::int64_t{row.face.index});
}

// Neighbouring files mostly name the same maker.
std::int64_t FaceTable::MakerOf(const std::string& text) {
  if (last_maker_id_ != 0 && last_maker_ == text) return last_maker_id_;
  find_maker_.With(std::string_view(text));
  const bool is_known = find_maker_.Step();
  last_maker_id_ = is_known ? find_maker_.Integer(0) : 0;
  find_maker_.Reset();
  if (!is_known) {
    add_maker_.Run(std::string_view(text));
    last_maker_id_ = database_.last_id();
  }
  last_maker_ = text;
  return last_maker_id_;
}

}  // namespace quillmark::tool
