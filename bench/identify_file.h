// One whole request through the C interface: every attribute of a file, then every getter of every face.
#ifndef QUILLMARK_BENCH_IDENTIFY_FILE_H_
#define QUILLMARK_BENCH_IDENTIFY_FILE_H_

#include <array>
#include <cstdint>
#include <string>

#include "quillmark/quillmark.h"

namespace quillmark::bench {

// Faces that came out; 0 when the file was not identified.
inline std::uint32_t IdentifyFile(const std::string& path) {
  static constexpr std::array kTexts = {QM_GetKindName,    QM_GetFamilyName,        QM_GetPostScriptName,
                                        QM_GetFullName,    QM_GetDisplayName,       QM_GetPlatform,
                                        QM_GetPrinterFont, QM_GetWindowsFullName,   QM_GetVersion,
                                        QM_GetFoundryName, QM_GetLegacyFoundryName, QM_GetWindowsMMFile};
  static constexpr std::array kNumbers = {QM_GetKerningChecksum, QM_GetQuillmarkChecksum,
                                          QM_GetLegacyQuillmarkChecksum, QM_GetOutlineFileSize};
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) return 0;
  std::uint32_t count = 0;
  (void)QM_GetFontCount(array, &count);
  for (std::uint32_t face = 0; face < count; ++face) {
    char text[512];
    std::uint32_t number = 0;
    for (const auto get : kTexts) (void)get(array, face, text, sizeof text);
    for (const auto get : kNumbers) (void)get(array, face, &number);
  }
  (void)QM_SpecifierFree(array);
  return count;
}

}  // namespace quillmark::bench

#endif
