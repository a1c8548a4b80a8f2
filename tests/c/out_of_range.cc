// A C++ host catches the exception of a bad index by its standard type, out of the shared library.
#include <cstdio>
#include <stdexcept>

#include "quillmark/quillmark.h"

int main() {
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifierFromXML("<FontData></FontData>", &array) != QM_STATUS_OK) return 1;
  int caught = 0;
  for (const auto getter : {QM_GetKindName, QM_GetFamilyName}) {
    for (const std::uint32_t index : {std::uint32_t{1}, UINT32_MAX}) {
      char buffer[] = "?";
      try {
        getter(array, index, buffer, sizeof(buffer));
      } catch (const std::out_of_range&) {
        if (buffer[0] == '?') ++caught;
      }
    }
  }
  QM_SpecifierFree(array);
  std::printf("%d of 4 caught\n", caught);
  return caught == 4 ? 0 : 1;
}
