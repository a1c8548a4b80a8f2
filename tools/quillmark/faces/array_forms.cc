#include "faces/array_forms.h"

#include <cstddef>
#include <utility>

#include "api/font_array.h"

namespace quillmark::tool {
namespace {

using Representation = std::int32_t (*)(const QM_FontArray*, char*, std::uint32_t*);

// Asks for the size first, then for the text.
std::string TextOf(Representation get, const QM_FontArray& array) {
  char none = 0;
  std::uint32_t length = 0;
  (void)get(&array, &none, &length);
  std::string text(length, '\0');
  (void)get(&array, text.data(), &length);
  text.resize(text.empty() ? 0 : text.size() - 1);
  return text;
}

}  // namespace

FontArray EmptyArray() { return FontArray(new QM_FontArray); }

void Join(FontArray& whole, FontArray part) {
  if (whole->size() == 0) {
    whole = std::move(part);
    return;
  }
  for (std::size_t i = 0; i < part->size(); ++i) whole->push_back(part->view(i));
}

std::string XmlText(const QM_FontArray& array) { return TextOf(QM_GetXMLRepresentation, array); }

std::string PropertyListText(const QM_FontArray& array) {
  return TextOf(QM_GetPropertyListRepresentation, array);
}

}  // namespace quillmark::tool
