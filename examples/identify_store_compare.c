/* A host in C99: keeps what it learns of a font file as XML text and tells at the next run whether the file
   still holds the same fonts.

   Usage: identify_store_compare FONT STORE
   STORE is written when it does not exist. Exits with 0 when the faces of FONT agree with the stored ones,
   with 1 when they differ, with 2 when a file cannot be used. */
#include <inttypes.h>
#include <quillmark/quillmark.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* Stored texts keep at most 511 bytes of a value, so a buffer of this size gives what they keep. */
enum { TEXT_SIZE = 512 };

/* The largest number that a stored checksum is read back as. */
static const uint32_t kLargestStored = 0x7FFFFFFF;

typedef int32_t (*text_getter)(const QM_FontArray*, uint32_t, char*, int32_t);
typedef int32_t (*number_getter)(const QM_FontArray*, uint32_t, uint32_t*);

static const struct {
  const char* label;
  text_getter get;
} kTexts[] = {{"PostScript name", QM_GetPostScriptName},
              {"kind", QM_GetKindName},
              {"family", QM_GetFamilyName},
              {"version", QM_GetVersion},
              {"foundry", QM_GetFoundryName}};

static const struct {
  const char* label;
  number_getter get;
} kChecksums[] = {{"checksum", QM_GetQuillmarkChecksum}, {"kerning checksum", QM_GetKerningChecksum}};

/* Storing. The first call only asks for the size that the text needs. */
static int store(const QM_FontArray* array, const char* path) {
  char none;
  uint32_t size = 0;
  if (QM_GetXMLRepresentation(array, &none, &size) != QM_STATUS_OUT_OF_RANGE) return 0;
  char* text = malloc(size);
  if (!text) return 0;
  int stored = 0;
  if (QM_GetXMLRepresentation(array, text, &size) == QM_STATUS_OK) {
    FILE* file = fopen(path, "wb");
    if (file) {
      stored = fwrite(text, 1, size - 1, file) == size - 1;
      stored = fclose(file) == 0 && stored;
    }
  }
  free(text);
  return stored;
}

/* The whole of an open file with a NUL behind it, to be freed; null when it cannot be read. */
static char* read_all(FILE* file) {
  if (fseek(file, 0, SEEK_END) != 0) return NULL;
  const long size = ftell(file);
  if (size < 0 || fseek(file, 0, SEEK_SET) != 0) return NULL;
  char* text = malloc((size_t)size + 1);
  if (!text) return NULL;
  text[fread(text, 1, (size_t)size, file)] = '\0';
  return text;
}

/* Reading back. Null when STORE cannot be read or holds no face. */
static QM_FontArray* read_back(const char* path) {
  QM_FontArray* array = NULL;
  FILE* file = fopen(path, "rb");
  if (!file) return NULL;
  char* text = read_all(file);
  fclose(file);
  if (text && QM_CreateSpecifierFromXML(text, &array) != QM_STATUS_OK) array = NULL;
  free(text);
  return array;
}

static void ask_text(text_getter get, const QM_FontArray* array, uint32_t face, char text[TEXT_SIZE]) {
  if (get(array, face, text, TEXT_SIZE) != QM_STATUS_OK) strcpy(text, "(not held)");
}

static int same_text(const char* label, text_getter get, const QM_FontArray* fresh,
                     const QM_FontArray* stored, uint32_t face) {
  char now[TEXT_SIZE];
  char then[TEXT_SIZE];
  ask_text(get, fresh, face, now);
  ask_text(get, stored, face, then);
  const int same = strcmp(now, then) == 0;
  if (same) {
    printf("  %-18s%s\n", label, now);
  } else {
    printf("! %-18s%s, read back as %s\n", label, now, then);
  }
  return same;
}

/* A checksum above the largest that is read back agrees with that one: the stored text itself tells more. */
static int same_checksum(const char* label, number_getter get, const QM_FontArray* fresh,
                         const QM_FontArray* stored, uint32_t face) {
  uint32_t now = 0;
  uint32_t then = 0;
  if (get(fresh, face, &now) != QM_STATUS_OK || get(stored, face, &then) != QM_STATUS_OK) {
    printf("! %-18s(not held)\n", label);
    return 0;
  }
  const int same = then == (now > kLargestStored ? kLargestStored : now);
  printf("%c %-18s%08" PRIX32, same ? ' ' : '!', label, now);
  if (then != now) printf(", read back as %08" PRIX32, then);
  printf("\n");
  return same;
}

static int same_faces(const QM_FontArray* fresh, const QM_FontArray* stored) {
  uint32_t count = 0;
  uint32_t stored_count = 0;
  QM_GetFontCount(fresh, &count);
  QM_GetFontCount(stored, &stored_count);
  if (count != stored_count) {
    printf("! faces             %" PRIu32 ", read back as %" PRIu32 "\n", count, stored_count);
    return 0;
  }
  int same = 1;
  for (uint32_t face = 0; face < count; ++face) {
    printf("face %" PRIu32 "\n", face);
    for (size_t i = 0; i < sizeof kTexts / sizeof kTexts[0]; ++i) {
      same &= same_text(kTexts[i].label, kTexts[i].get, fresh, stored, face);
    }
    for (size_t i = 0; i < sizeof kChecksums / sizeof kChecksums[0]; ++i) {
      same &= same_checksum(kChecksums[i].label, kChecksums[i].get, fresh, stored, face);
    }
  }
  return same;
}

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: %s FONT STORE\n", argv[0]);
    return 2;
  }
  QM_FontArray* fresh = NULL;
  if (QM_CreateSpecifier(argv[1], 0, QM_ATTRIBUTES_ALL, &fresh) != QM_STATUS_OK) {
    fprintf(stderr, "%s: no font that can be read\n", argv[1]);
    return 2;
  }
  FILE* known = fopen(argv[2], "rb");
  if (known) fclose(known);
  QM_FontArray* stored = known || store(fresh, argv[2]) ? read_back(argv[2]) : NULL;
  int status = 2;
  if (stored) {
    status = same_faces(fresh, stored) ? 0 : 1;
    puts(status == 0 ? "the stored faces agree" : "the stored faces differ");
    QM_SpecifierFree(stored);
  } else {
    fprintf(stderr, "%s: no stored faces\n", argv[2]);
  }
  QM_SpecifierFree(fresh);
  return status;
}
