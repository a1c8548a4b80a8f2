/* The interface as a C99 host meets it, through the shared library: all 28 functions with null arguments, bad
   indexes (where no exception is due) and buffers of every interesting size. Takes no argument; prints the
   checks that failed and exits with 1 then. */
#include <limits.h>
#include <stdio.h>
#include <string.h>

#include "quillmark/quillmark.h"

static int failures = 0;
#define CHECK(condition)                                            \
  do {                                                              \
    if (!(condition)) {                                             \
      fprintf(stderr, "contract.c:%d: %s\n", __LINE__, #condition); \
      ++failures;                                                   \
    }                                                               \
  } while (0)

typedef int32_t (*string_getter)(const QM_FontArray*, uint32_t, char*, int32_t);
typedef int32_t (*number_getter)(const QM_FontArray*, uint32_t, uint32_t*);

static const char kStored[] =
    "<FontData><FontKind>TrueType</FontKind><Family>Quill</Family><PostScriptName>Quill-Sans</PostScriptName>"
    "<Foundry>unheard of</Foundry><Version>Version 1.5</Version><OutlineFileName>/a/b.pfb</OutlineFileName>"
    "<KerningChecksum>0000000B</KerningChecksum><Checksum>0000000C</Checksum>"
    "<OutlineFileSize>13</OutlineFileSize></FontData>";

/* Attributes with their text, null where none is held; how a bad index is answered, -1 by an exception. */
static const struct {
  string_getter get;
  const char* expected;
  int32_t bad_index;
} kTexts[] = {{QM_GetKindName, "TrueType", -1},
              {QM_GetFamilyName, "Quill", -1},
              {QM_GetPostScriptName, "Quill-Sans", 4},
              {QM_GetFullName, NULL, 4},
              {QM_GetDisplayName, NULL, 4},
              {QM_GetPlatform, NULL, 4},
              {QM_GetPrinterFont, "/a/b.pfb", 4},
              {QM_GetWindowsFullName, NULL, 4},
              {QM_GetVersion, "1.5", 4},
              {QM_GetFoundryName, "--", 4},
              {QM_GetLegacyFoundryName, "--", 4},
              {QM_GetWindowsMMFile, NULL, 1}};

static const struct {
  number_getter get;
  int32_t status;
  uint32_t expected;
} kNumbers[] = {{QM_GetKerningChecksum, QM_STATUS_OK, 11},
                {QM_GetQuillmarkChecksum, QM_STATUS_OK, 12},
                {QM_GetLegacyQuillmarkChecksum, QM_STATUS_NOT_HELD, 77},
                {QM_GetOutlineFileSize, QM_STATUS_OK, 13}};

/* A buffer of `size` bytes in the middle of a larger one: nothing outside it may change. */
static void check_copy(string_getter get, const QM_FontArray* array, const char* expected, int32_t size) {
  char buffer[80];
  char wanted[80];
  memset(buffer, '?', sizeof buffer);
  memset(wanted, '?', sizeof wanted);
  if (size > 0) sprintf(wanted + 1, "%.*s", (int)size - 1, expected);
  CHECK(get(array, 0, buffer + 1, size) == QM_STATUS_OK);
  CHECK(memcmp(buffer, wanted, sizeof buffer) == 0);
}

static void check_getters(const QM_FontArray* array) {
  static const uint32_t bad[] = {1, UINT32_MAX};
  char text[8] = "?";
  uint32_t value;
  size_t i;
  size_t k;
  for (i = 0; i < sizeof kTexts / sizeof kTexts[0]; ++i) {
    const string_getter get = kTexts[i].get;
    CHECK(get(NULL, 0, text, sizeof text) == QM_STATUS_FAILED);
    CHECK(get(array, 0, NULL, sizeof text) == QM_STATUS_FAILED);
    for (k = 0; k < 2 && kTexts[i].bad_index >= 0; ++k) {
      CHECK(get(array, bad[k], text, sizeof text) == kTexts[i].bad_index);
    }
    if (kTexts[i].expected) {
      const int32_t needed = (int32_t)strlen(kTexts[i].expected) + 1;
      const int32_t sizes[] = {INT32_MIN, -1, 0, 1, needed - 1, needed};
      for (k = 0; k < 6; ++k) check_copy(get, array, kTexts[i].expected, sizes[k]);
    } else {
      CHECK(get(array, 0, text, sizeof text) == QM_STATUS_NOT_HELD);
    }
    CHECK(text[0] == '?');
  }
  for (i = 0; i < sizeof kNumbers / sizeof kNumbers[0]; ++i) {
    const number_getter get = kNumbers[i].get;
    value = 77;
    CHECK(get(NULL, 0, &value) == QM_STATUS_FAILED);
    CHECK(get(array, 0, NULL) == QM_STATUS_FAILED);
    for (k = 0; k < 2; ++k) CHECK(get(array, bad[k], &value) == QM_STATUS_OUT_OF_RANGE);
    CHECK(value == 77);
    CHECK(get(array, 0, &value) == kNumbers[i].status && value == kNumbers[i].expected);
  }
}

typedef int32_t (*writer)(const QM_FontArray*, char*, uint32_t*);
typedef int32_t (*reader)(const char*, QM_FontArray**);

static void check_stored_form(const QM_FontArray* array, writer write, reader read, int32_t unreadable) {
  char text[2048];
  char cut[2048];
  uint32_t needed = 0;
  uint32_t length = sizeof text;
  uint32_t i;
  QM_FontArray* again = NULL;
  CHECK(write(NULL, text, &length) == QM_STATUS_FAILED);
  CHECK(write(array, NULL, &length) == QM_STATUS_FAILED);
  CHECK(write(array, text, NULL) == QM_STATUS_FAILED);
  text[0] = '?';
  CHECK(write(array, text, &needed) == QM_STATUS_OUT_OF_RANGE);
  CHECK(length == sizeof text && text[0] == '?');
  CHECK(write(array, text, &length) == QM_STATUS_OK);
  CHECK(length == needed && strlen(text) + 1 == needed);

  for (i = 0; i < 3; ++i) {
    const uint32_t room = i == 0 ? 1 : needed - 2 + i;
    length = room;
    CHECK(write(array, cut, &length) == (room < needed ? QM_STATUS_OUT_OF_RANGE : QM_STATUS_OK));
    CHECK(length == needed && strlen(cut) == room - 1 && strncmp(cut, text, room - 1) == 0);
  }
  CHECK(read(NULL, &again) == QM_STATUS_FAILED);
  CHECK(read(text, NULL) == QM_STATUS_FAILED);
  CHECK(read("", &again) == unreadable && again == NULL);
  CHECK(read(text, &again) == QM_STATUS_OK);
  length = sizeof cut;
  CHECK(write(again, cut, &length) == QM_STATUS_OK && strcmp(cut, text) == 0);
  CHECK(QM_SpecifierFree(again) == QM_STATUS_OK);
}

static void check_names_without_an_array(void) {
  char text[8] = "?";
  char* buffers[1] = {text};
  char* no_buffer[1] = {NULL};
  char* fond = NULL;
  uint32_t count = 77;
  CHECK(QM_GetStyles(NULL, "", 1, sizeof text, &count, buffers) == QM_STATUS_FAILED);
  CHECK(QM_GetStyles("", NULL, 1, sizeof text, &count, buffers) == QM_STATUS_FAILED);
  CHECK(QM_GetStyles("", "", 1, sizeof text, NULL, buffers) == QM_STATUS_FAILED);
  CHECK(QM_GetStyles("", "", 1, sizeof text, &count, NULL) == QM_STATUS_FAILED);
  CHECK(QM_GetStyles("", "", 1, sizeof text, &count, no_buffer) == QM_STATUS_FAILED);
  CHECK(count == 77 && text[0] == '?');
  CHECK(QM_GetStyles("Quill Bold", "", 1, 0, &count, buffers) == QM_STATUS_OK && text[0] == '?');
  CHECK(QM_GetStyles("Quill Bold", "", 0, sizeof text, &count, buffers) == QM_STATUS_OK && count == 0);
  CHECK(QM_GetStyles("Quill Bold", "", 1, 4, &count, buffers) == QM_STATUS_OK && count == 1);
  CHECK(strcmp(text, "Bol") == 0);

  CHECK(QM_GetClassificationFromFamily(NULL, "", text, sizeof text) == QM_STATUS_FAILED);
  CHECK(QM_GetClassificationFromFamily("", "", NULL, sizeof text) == QM_STATUS_FAILED);
  CHECK(QM_GetClassificationFromFamily("No Such Family", NULL, text, -1) == QM_STATUS_OK && text[0] == 'B');
  CHECK(QM_GetClassificationFromFamily("No Such Family", NULL, text, 2) == QM_STATUS_OK);
  CHECK(strcmp(text, "-") == 0);

  QM_GetPostScriptNameFromNamesTable(NULL, 10, text, &fond, 0, text, sizeof text);
  QM_GetPostScriptNameFromNamesTable("", 0, NULL, &fond, 0, text, sizeof text);
  QM_GetPostScriptNameFromNamesTable("", 0, text, NULL, 0, text, sizeof text);
  QM_GetPostScriptNameFromNamesTable("", 0, text, &fond, 0, NULL, sizeof text);
  QM_GetPostScriptNameFromNamesTable("", 0, text, &fond, 0, text, sizeof text);
  CHECK(strcmp(text, "-") == 0);
}

int main(void) {
  QM_FontArray* array = NULL;
  uint32_t major = 77;
  uint32_t minor = 77;
  uint32_t number = 77;
  QM_GetQuillmarkVersion(NULL, &minor);
  QM_GetQuillmarkVersion(&major, NULL);
  CHECK(major == 77 && minor == 77);
  QM_GetQuillmarkVersion(&major, &minor);
  CHECK(major == QM_VERSION_MAJOR && minor == QM_VERSION_MINOR);

  CHECK(QM_CreateSpecifier(NULL, 0, QM_ATTRIBUTES_ALL, &array) == QM_STATUS_FAILED);
  CHECK(QM_CreateSpecifier("/dev/null", 0, QM_ATTRIBUTES_ALL, NULL) == QM_STATUS_FAILED);
  CHECK(QM_CreateSpecifier("/dev/null", -1, QM_ATTRIBUTES_ALL, &array) == QM_STATUS_FAILED);
  CHECK(array == NULL);

  CHECK(QM_CreateSpecifierFromXML(kStored, &array) == QM_STATUS_OK);
  CHECK(QM_GetFontCount(NULL, &number) == QM_STATUS_FAILED && number == 77);
  CHECK(QM_GetFontCount(array, NULL) == QM_STATUS_FAILED);
  CHECK(QM_GetFontCount(array, &number) == QM_STATUS_OK && number == 1);
  CHECK(QM_GetFontIndexForFONDResourceID(array, 0, 1, &number) == QM_STATUS_FAILED && number == 0);
  CHECK(QM_GetFontIndexForFONDResourceID(NULL, 0, 0, &number) == QM_STATUS_FAILED);
  CHECK(QM_GetFontIndexForFONDResourceID(array, 0, 0, &number) == QM_STATUS_OK && number == 0);
  check_getters(array);
  check_stored_form(array, QM_GetXMLRepresentation, QM_CreateSpecifierFromXML, QM_STATUS_OUT_OF_RANGE);
  check_stored_form(array, QM_GetPropertyListRepresentation, QM_CreateSpecifierFromPropertyList,
                    QM_STATUS_FAILED);
  check_names_without_an_array();
  CHECK(QM_SpecifierFree(NULL) == QM_STATUS_FAILED);
  CHECK(QM_SpecifierFree(array) == QM_STATUS_OK);
  return failures ? 1 : 0;
}
