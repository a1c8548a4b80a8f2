#include "faces/face.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "api/font_array.h"
#include "platform/files/font_file.h"

namespace quillmark::tool {
namespace {

constexpr std::int32_t kTextBytes = 16 * 1024;
constexpr std::uint32_t kMaxStyles = 32;
constexpr std::int32_t kStyleBytes = 512;
constexpr std::int32_t kClassBytes = 1024;  // more than a class of the table may have

using TextGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);
using NumberGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, std::uint32_t*);

std::string Text(TextGetter get, const QM_FontArray* array, std::uint32_t index) {
  std::array<char, kTextBytes> usual;
  usual[0] = '\0';
  if (get(array, index, usual.data(), kTextBytes) != 0) return {};
  std::size_t length = std::strlen(usual.data());
  if (length + 1 < kTextBytes) return {usual.data(), length};
  // Names are short, but a stored form may hold any: the buffer grows until the text leaves room in it.
  for (std::int32_t size = kTextBytes * 2; size > 0; size = size > INT32_MAX / 2 ? 0 : size * 2) {
    std::string buffer(static_cast<std::size_t>(size), '\0');
    if (get(array, index, buffer.data(), size) != 0) return {};
    length = std::strlen(buffer.c_str());
    if (length + 1 < static_cast<std::size_t>(size)) return buffer.substr(0, length);
  }
  return {};
}

std::uint32_t Number(NumberGetter get, const QM_FontArray* array, std::uint32_t index) {
  std::uint32_t value = 0;
  return get(array, index, &value) == 0 ? value : 0;
}

}  // namespace

void FreeArray::operator()(QM_FontArray* array) const { QM_SpecifierFree(array); }

std::vector<Face> FacesOf(const QM_FontArray* array, const std::string& path) {
  std::uint32_t count = 0;
  if (QM_GetFontCount(array, &count) != 0) return {};
  std::vector<Face> faces;
  faces.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    Face face;
    face.path = path;
    face.index = i;
    face.post_script_name = Text(QM_GetPostScriptName, array, i);
    face.family = Text(QM_GetFamilyName, array, i);
    face.full_name = Text(QM_GetFullName, array, i);
    face.display_name = Text(QM_GetDisplayName, array, i);
    face.windows_full_name = Text(QM_GetWindowsFullName, array, i);
    face.kind = Text(QM_GetKindName, array, i);
    face.version = Text(QM_GetVersion, array, i);
    face.platform = Text(QM_GetPlatform, array, i);
    face.foundry = Text(QM_GetFoundryName, array, i);
    face.checksum = Number(QM_GetQuillmarkChecksum, array, i);
    face.legacy_checksum = Number(QM_GetLegacyQuillmarkChecksum, array, i);
    face.kerning_checksum = Number(QM_GetKerningChecksum, array, i);
    face.outline_file = Text(QM_GetPrinterFont, array, i);
    face.outline_file_exists = !face.outline_file.empty() && IsRegularFile(face.outline_file);
    face.outline_file_size = Number(QM_GetOutlineFileSize, array, i);
    face.styles = StylesOf(face.post_script_name, face.full_name);
    face.classification = ClassOf(face.family, nullptr);
    const QM_FontSpecifier& specifier = array->view(i);
    if (specifier.fondResourceID >= 0) {
      face.fond_id = specifier.fondResourceID;
      face.style = specifier.style;
    }
    faces.push_back(std::move(face));
  }
  return faces;
}

std::vector<std::string> StylesOf(const std::string& primary_name, const std::string& secondary_name) {
  std::array<std::array<char, kStyleBytes>, kMaxStyles> texts;
  std::array<char*, kMaxStyles> buffers;
  for (std::size_t i = 0; i < kMaxStyles; ++i) buffers[i] = texts[i].data();
  std::uint32_t count = 0;
  try {
    if (QM_GetStyles(primary_name.c_str(), secondary_name.c_str(), kMaxStyles, kStyleBytes, &count,
                     buffers.data()) != 0) {
      return {};
    }
  } catch (const std::runtime_error&) {
    return {};  // the keyword table lacks an array: no style is known
  }
  std::vector<std::string> styles;
  for (std::uint32_t i = 0; i < count; ++i) styles.emplace_back(texts[i].data());
  return styles;
}

std::string ClassOf(const std::string& family, const char* alternate) {
  std::array<char, kClassBytes> buffer;
  if (QM_GetClassificationFromFamily(family.c_str(), alternate, buffer.data(), kClassBytes) != 0) return {};
  return buffer.data();
}

std::string Hex(std::uint32_t value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(value));
  return text;
}

}  // namespace quillmark::tool
