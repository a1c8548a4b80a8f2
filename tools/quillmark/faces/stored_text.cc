#include "faces/stored_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "api/font_array.h"
#include "api/xml_reader.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/files/font_file.h"

namespace quillmark::tool {
namespace {

// As the reader of the form walks from block to block.
std::size_t CountBlocks(std::string_view text) {
  std::size_t blocks = 0;
  for (std::size_t at = 0; (at = text.find("<FontData>", at)) != std::string_view::npos; ++blocks) {
    at = text.find("</FontData>", at);
    if (at == std::string_view::npos) return blocks + 1;
  }
  return blocks;
}

std::size_t CountElements(const std::string& text) {
  const auto data = Adopt(CFDataCreate(nullptr, AsBytes(text).data(), static_cast<CFIndex>(text.size())));
  CFRef<CFStringRef> error;
  const auto list =
      Adopt(CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListImmutable, error.Receive()));
  return list ? static_cast<std::size_t>(CFArrayGetCount(static_cast<CFArrayRef>(list.get()))) : 0;
}

// Stored numbers saturate: this one stands for itself and every larger one.
constexpr std::uint32_t kLargest = 0x7FFFFFFF;

}  // namespace

std::optional<StoredFaces> ParseStored(const std::string& text) {
  // The property list first: its reader refuses the XML form, while the XML form's is a search that would
  // find its tags inside the strings of a list.
  QM_FontArray* made = nullptr;
  if (QM_CreateSpecifierFromPropertyList(text.c_str(), &made) == 0) {
    return StoredFaces{FontArray(made), StoredForm::kPropertyList, CountElements(text)};
  }
  FontArray faces(new QM_FontArray);
  const XmlReading reading = ReadXml(text.c_str(), *faces);
  if (!reading.any_whole) return std::nullopt;
  return StoredFaces{std::move(faces), StoredForm::kXml, CountBlocks(text), reading.is_cut};
}

std::optional<std::string> ReadText(const std::string& path) {
  const std::optional<RegularFile> file = RegularFile::Open(path);
  if (!file) return std::nullopt;
  std::string text;
  std::array<std::uint8_t, 64 * 1024> block;
  while (const std::size_t count = file->ReadAt(text.size(), block)) {
    const std::span<const std::uint8_t> read(block.data(), count);
    // Parsing would take a text with a NUL for the part before it. Large files of other kinds end here.
    if (std::find(read.begin(), read.end(), 0) != read.end()) return std::nullopt;
    text.append(read.begin(), read.end());
  }
  return text;
}

std::optional<StoredFaces> ReadStored(const std::string& path) {
  const std::optional<std::string> text = ReadText(path);
  return text ? ParseStored(*text) : std::nullopt;
}

std::string NotRead(const StoredFaces& stored) {
  const QM_FontArray& faces = *stored.array;
  std::string told;
  if (faces.size() < stored.listed) {
    told = "gives " + std::to_string(faces.size()) + " of the " + std::to_string(stored.listed) +
           " faces it lists: a PostScript name that comes again is left out";
  }
  std::size_t saturated = 0;
  for (std::uint32_t i = 0; i < faces.size(); ++i) {
    const QM_FontSpecifier& face = faces.view(i);
    if (face.checksum == kLargest || face.kerningChecksum == kLargest) ++saturated;
  }
  if (saturated > 0) {
    told += (told.empty() ? "" : "; ") + std::to_string(saturated) +
            (saturated == 1 ? " face has a checksum" : " faces have a checksum") +
            " of 7FFFFFFF, which stands for itself and every larger one";
  }
  return told;
}

}  // namespace quillmark::tool
