/* A host in C99 and C++: prints the maker of the first face of a file, for which the library needs its
 * tables. */
#include <quillmark/quillmark.h>
#include <stdio.h>

int main(int argc, char** argv) {
  QM_FontArray* array = NULL;
  char foundry[256] = "";
  if (argc != 2 || QM_CreateSpecifier(argv[1], 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) return 1;
  if (QM_GetFoundryName(array, 0, foundry, sizeof foundry) != QM_STATUS_OK) return 1;
  puts(foundry);
  return QM_SpecifierFree(array);
}
