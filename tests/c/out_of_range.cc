// A C++ host catches the exception of a bad index by its standard type, out of the shared library.
#include <stdexcept>

#include "quillmark/quillmark.h"

int main() {
  QM_FontArray* array = nullptr;
  QM_CreateSpecifierFromXML("<FontData></FontData>", &array);
  int missed = 2;
  for (const auto getter : {QM_GetKindName, QM_GetFamilyName}) {
    char buffer[] = "?";
    try {
      getter(array, 1, buffer, sizeof(buffer));
    } catch (const std::out_of_range&) {
      if (buffer[0] == '?') --missed;
    }
  }
  QM_SpecifierFree(array);
  return missed;
}
