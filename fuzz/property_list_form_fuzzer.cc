// The input as a stored property list: what is read must be written, and the text read again.
#include <string>

#include "array_queries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifierFromPropertyList(text.c_str(), &array) != QM_STATUS_OK) return 0;
  quillmark::AskEverything(array);
  const std::string once = quillmark::Represent(QM_GetPropertyListRepresentation, array);
  QM_FontArray* again = nullptr;
  if (QM_CreateSpecifierFromPropertyList(once.c_str(), &again) != QM_STATUS_OK) std::abort();
  quillmark::AskEverything(again);
  (void)quillmark::Represent(QM_GetPropertyListRepresentation, again);
  QM_SpecifierFree(again);
  QM_SpecifierFree(array);
  return 0;
}
