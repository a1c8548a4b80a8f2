#include "hostile/everything_of.h"

#include <cstdint>

namespace quillmark {
namespace {

std::string StoredForm(std::int32_t (*write)(const QM_FontArray*, char*, std::uint32_t*),
                       const QM_FontArray* array) {
  std::uint32_t length = 0;
  char nothing = 0;
  write(array, &nothing, &length);
  std::string text(length, '\0');
  write(array, text.data(), &length);
  return text;
}

}  // namespace

std::string EverythingOf(const QM_FontArray* array) {
  if (array == nullptr) return "none";
  std::string all;
  std::uint32_t count = 0;
  QM_GetFontCount(array, &count);
  for (std::uint32_t face = 0; face < count; ++face) {
    for (const auto get : {QM_GetKindName, QM_GetFamilyName, QM_GetPostScriptName, QM_GetFullName,
                           QM_GetDisplayName, QM_GetPlatform, QM_GetPrinterFont, QM_GetWindowsFullName,
                           QM_GetVersion, QM_GetFoundryName, QM_GetLegacyFoundryName, QM_GetWindowsMMFile}) {
      char buffer[512] = "";
      const std::int32_t status = get(array, face, buffer, sizeof(buffer));
      all += std::to_string(status) + " " + buffer + "\n";
    }
    for (const auto get : {QM_GetKerningChecksum, QM_GetQuillmarkChecksum, QM_GetLegacyQuillmarkChecksum,
                           QM_GetOutlineFileSize}) {
      std::uint32_t value = 0;
      const std::int32_t status = get(array, face, &value);
      all += std::to_string(status) + " " + std::to_string(value) + "\n";
    }
  }
  return all + StoredForm(QM_GetXMLRepresentation, array) +
         StoredForm(QM_GetPropertyListRepresentation, array);
}

}  // namespace quillmark
