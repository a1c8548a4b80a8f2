#include "faces/stored_text.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "api/font_array.h"
#include "api/xml_reader.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/files/font_file.h"

namespace quillmark::tool {
namespace {

std::size_t Count(std::string_view text, std::string_view tag) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(tag, at)) != std::string_view::npos; at += tag.size()) ++count;
  return count;
}

// Hosts store a whole document: without its end, or with a block that does not end, it was cut or damaged.
bool IsBroken(std::string_view text, std::size_t blocks) {
  return Count(text, "</FontData>") != blocks || (text.find("<QuillmarkData") != std::string_view::npos &&
                                                  text.find("</QuillmarkData>") == std::string_view::npos);
}

std::size_t CountElements(const std::string& text) {
  const auto data = Adopt(CFDataCreate(nullptr, AsBytes(text).data(), static_cast<CFIndex>(text.size())));
  CFRef<CFStringRef> error;
  const auto list =
      Adopt(CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, error.Receive()));
  return list ? static_cast<std::size_t>(CFArrayGetCount(static_cast<CFArrayRef>(list.get()))) : 0;
}

// Asks for the size first, then for the text.
std::string TextOf(std::int32_t (*get)(const QM_FontArray*, char*, std::uint32_t*),
                   const QM_FontArray& array) {
  char none = 0;
  std::uint32_t length = 0;
  (void)get(&array, &none, &length);
  std::string text(length, '\0');
  (void)get(&array, text.data(), &length);
  text.resize(text.empty() ? 0 : text.size() - 1);
  return text;
}

}  // namespace

std::string XmlText(const QM_FontArray& array) { return TextOf(QM_GetXMLRepresentation, array); }

std::string PropertyListText(const QM_FontArray& array) {
  return TextOf(QM_GetPropertyListRepresentation, array);
}

std::optional<StoredFaces> ParseStored(const std::string& text) {
  // The property list first: its reader refuses the XML form, while the reader of the XML form searches for
  // tags and would find them inside the strings of a list.
  QM_FontArray* made = nullptr;
  if (QM_CreateSpecifierFromPropertyList(text.c_str(), &made) == 0) {
    return StoredFaces{FontArray(made), StoredForm::kPropertyList, CountElements(text)};
  }
  FontArray faces(new QM_FontArray);
  const XmlReading reading = ReadXml(text.c_str(), *faces);
  if (!reading.any_whole) return std::nullopt;
  const std::size_t blocks = Count(text, "<FontData>");  // whether they end or not
  return StoredFaces{std::move(faces), StoredForm::kXml, blocks, reading.is_cut, IsBroken(text, blocks)};
}

std::optional<std::string> ReadText(const FileSystem& files, const std::string& path) {
  FileAccess access(files);
  if (!access.Status(path).regular) return std::nullopt;
  const std::optional<RegularFile> file = RegularFile::Open(access, path);
  if (!file) return std::nullopt;
  std::string text;
  std::array<std::uint8_t, std::size_t{64} * 1024> block;
  while (const std::size_t count = file->ReadAt(text.size(), block)) {
    const std::span<const std::uint8_t> read(block.data(), count);
    // Parsing would take a text with a NUL for the part before it. Large files of other kinds end here.
    if (std::find(read.begin(), read.end(), 0) != read.end()) return std::nullopt;
    text.append(read.begin(), read.end());
  }
  return text;
}

std::optional<StoredFaces> ReadStored(const FileSystem& files, const std::string& path) {
  const std::optional<std::string> text = ReadText(files, path);
  return text ? ParseStored(*text) : std::nullopt;
}

std::string NotRead(const StoredFaces& stored) {
  const QM_FontArray& faces = *stored.array;
  std::string text;
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
  if (faces.size() < stored.listed) {
    add("gives " + std::to_string(faces.size()) + " of the " + std::to_string(stored.listed) +
        " faces it lists" + (stored.is_broken ? "" : ": a PostScript name that comes again is left out"));
  }
  if (stored.is_broken) {
    add("it is cut short or damaged, so that faces may be missing, and the last one not whole");
  }
  std::size_t saturated = 0;
  for (std::uint32_t i = 0; i < faces.size(); ++i) {
    const QM_FontSpecifier& face = faces.view(i);
    if (face.checksum == kLargestStored || face.kerningChecksum == kLargestStored) ++saturated;
  }
  if (saturated > 0) {
    add(std::to_string(saturated) + (saturated == 1 ? " face has a checksum" : " faces have a checksum") +
        " of 7FFFFFFF, which stands for itself and every larger one");
  }
  return text;
}

}  // namespace quillmark::tool
