#include "faces/attributes.h"

#include <cstring>
#include <utility>

#include "platform/files/font_file.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kTextBytes = std::size_t{16} * 1024;

// Names are short, but a stored form may hold any: the buffer grows until the text leaves room in it.
std::string Text(const TextAttribute& text, const QM_FontArray* array, std::uint32_t index,
                 std::string& buffer) {
  constexpr std::size_t kLargest = std::size_t{1} << 30;
  for (;; buffer.resize(buffer.size() * 2)) {
    if (text.get(array, index, buffer.data(), static_cast<std::int32_t>(buffer.size())) != 0) return {};
    const std::size_t length = std::strlen(buffer.c_str());
    if (length + 1 < buffer.size() || buffer.size() == kLargest) return buffer.substr(0, length);
  }
}

}  // namespace

std::vector<Face> FacesOf(const QM_FontArray* array, const std::string& path, const FaceNeeds& needs) {
  std::uint32_t count = 0;
  if (QM_GetFontCount(array, &count) != 0) return {};
  std::vector<Face> faces;
  faces.reserve(count);
  std::string buffer(kTextBytes, '\0');
  for (std::uint32_t i = 0; i < count; ++i) {
    Face face;
    face.path = path;
    face.index = i;
    for (const TextAttribute& text : kTextAttributes) face.*text.in_face = Text(text, array, i, buffer);
    for (const NumberAttribute& number : kNumberAttributes) {
      if (number.get(array, i, &(face.*number.in_face)) != 0) face.*number.in_face = 0;
    }
    face.outline_file_exists = !face.outline_file.empty() && IsRegularFile(face.outline_file);
    if (needs.styles) face.styles = StylesOf(face.post_script_name, face.full_name);
    if (needs.classification) face.classification = ClassOf(face.family, nullptr);
    const QM_FontSpecifier& specifier = array->view(i);
    if (specifier.fondResourceID >= 0) {
      face.fond_id = specifier.fondResourceID;
      face.style = specifier.style;
    }
    if (specifier.attributes & kVariationAxes) face.variable = specifier.has_variation_axes;
    faces.push_back(std::move(face));
  }
  return faces;
}

}  // namespace quillmark::tool
