// The exported functions about the library and an array as a whole.
// Tests: tests/api/queries_test.cc; tests/c/contract.c.
#include "api/font_array.h"
#include "quillmark/quillmark.h"

void QM_GetQuillmarkVersion(std::uint32_t* major, std::uint32_t* minor) {
  if (!major || !minor) return;
  *major = 1;
  *minor = 4;
}

std::int32_t QM_SpecifierFree(QM_FontArray* array) {
  if (!array) return QM_STATUS_FAILED;
  delete array;
  return QM_STATUS_OK;
}

std::int32_t QM_GetFontCount(const QM_FontArray* array, std::uint32_t* count) {
  if (!array || !count) return QM_STATUS_FAILED;
  *count = static_cast<std::uint32_t>(array->size());
  return QM_STATUS_OK;
}

std::int32_t QM_GetFontIndexForFONDResourceID(const QM_FontArray* array, std::int16_t fondID,
                                              std::int16_t style, std::uint32_t* index) {
  *index = 0;
  if (!array || !array->FindIndexForFondResourceID(fondID, style, *index)) return QM_STATUS_FAILED;
  return QM_STATUS_OK;
}
