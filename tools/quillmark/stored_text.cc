#include "stored_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "platform/forks.h"

namespace quillmark::tool {

std::optional<StoredFaces> ParseStored(const std::string& text) {
  // The property list first: its reader refuses the XML form, while the XML form's is a search that would
  // find its tags inside the strings of a list.
  QM_FontArray* made = nullptr;
  if (QM_CreateSpecifierFromPropertyList(text.c_str(), &made) == 0) {
    return StoredFaces{FontArray(made), StoredForm::kPropertyList};
  }
  if (QM_CreateSpecifierFromXML(text.c_str(), &made) == 0) {
    return StoredFaces{FontArray(made), StoredForm::kXml};
  }
  return std::nullopt;
}

std::optional<StoredFaces> ReadStored(const std::string& path) {
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
  return ParseStored(text);
}

}  // namespace quillmark::tool
