// The exported functions as lists, and as calls that give strings and arrays: what tests, fuzz targets and
// benchmarks all do with them.
#ifndef QUILLMARK_TESTS_BUILDERS_EXPORTED_CALLS_H_
#define QUILLMARK_TESTS_BUILDERS_EXPORTED_CALLS_H_

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>

#include "quillmark/quillmark.h"

namespace quillmark {

inline constexpr auto kTextGetters = {QM_GetKindName,    QM_GetFamilyName,        QM_GetPostScriptName,
                                      QM_GetFullName,    QM_GetDisplayName,       QM_GetPlatform,
                                      QM_GetPrinterFont, QM_GetWindowsFullName,   QM_GetVersion,
                                      QM_GetFoundryName, QM_GetLegacyFoundryName, QM_GetWindowsMMFile};
inline constexpr auto kNumberGetters = {QM_GetKerningChecksum, QM_GetQuillmarkChecksum,
                                        QM_GetLegacyQuillmarkChecksum, QM_GetOutlineFileSize};

// An array as a host holds it.
struct FreeArray {
  void operator()(QM_FontArray* array) const { QM_SpecifierFree(array); }
};
using OwnedArray = std::unique_ptr<QM_FontArray, FreeArray>;

// Null without a face.
inline OwnedArray Create(const std::string& path, std::uint32_t request = QM_ATTRIBUTES_ALL) {
  QM_FontArray* array = nullptr;
  QM_CreateSpecifier(path.c_str(), 0, request, &array);
  return OwnedArray(array);
}

inline std::uint32_t CountOf(const QM_FontArray* array) {
  std::uint32_t count = 0;
  QM_GetFontCount(array, &count);
  return count;
}

// The stored form in a buffer of the size that `write` asks for.
using FormWriter = std::int32_t (*)(const QM_FontArray*, char*, std::uint32_t*);
inline std::string Stored(FormWriter write, const QM_FontArray* array, std::int32_t* status = nullptr) {
  std::uint32_t length = 0;
  char none = 0;
  write(array, &none, &length);
  std::string text(length, '?');
  const std::int32_t written = write(array, text.data(), &length);
  if (status != nullptr) *status = written;
  if (!text.empty()) text.pop_back();  // the NUL
  return text;
}

// All that the exported functions give of an array, as one text to compare; "none" for null.
inline std::string EverythingOf(const QM_FontArray* array) {
  if (array == nullptr) return "none";
  std::string all;
  for (std::uint32_t face = 0; face < CountOf(array); ++face) {
    for (const auto get : kTextGetters) {
      char buffer[512] = "";
      const std::int32_t status = get(array, face, buffer, sizeof(buffer));
      all += std::to_string(status) + " " + buffer + "\n";
    }
    for (const auto get : kNumberGetters) {
      std::uint32_t value = 0;
      const std::int32_t status = get(array, face, &value);
      all += std::to_string(status) + " " + std::to_string(value) + "\n";
    }
  }
  return all + Stored(QM_GetXMLRepresentation, array) + Stored(QM_GetPropertyListRepresentation, array);
}

}  // namespace quillmark

#endif
