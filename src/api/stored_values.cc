#include "api/stored_values.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace quillmark {

std::array<StoredValue, 9> StoredValues(const QM_FontArray* array, std::uint32_t index) {
  // A getter that fails leaves its text empty, its number 0.
  const auto text = [&](auto getter) -> std::string {
    char buffer[512] = {};
    static_cast<void>(getter(array, index, buffer, sizeof buffer));
    return buffer;
  };
  const auto number = [&](auto getter) {
    std::uint32_t value = 0;
    static_cast<void>(getter(array, index, &value));
    return value;
  };
  const auto hexadecimal = [&](auto getter) -> std::string {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08" PRIX32, number(getter));
    return digits;
  };
  const auto size = static_cast<std::int32_t>(number(QM_GetOutlineFileSize));
  return {{{"FontKind", text(QM_GetKindName)},
           {"PostScriptName", text(QM_GetPostScriptName)},
           {"Foundry", text(QM_GetFoundryName)},
           {"Family", text(QM_GetFamilyName)},
           {"Version", text(QM_GetVersion)},
           {"Checksum", hexadecimal(QM_GetQuillmarkChecksum)},
           {"KerningChecksum", hexadecimal(QM_GetKerningChecksum)},
           {"OutlineFileSize", std::to_string(size)},
           {"OutlineFileName", text(QM_GetPrinterFont)}}};
}

QM_FontSpecifier NewStoredFace() {
  QM_FontSpecifier face;
  face.style = 0;
  face.firstResourceID = 0;
  face.fondResourceID = 0;
  return face;
}

std::uint32_t ParseLong(const char* text, int base) {
  using Limits = std::numeric_limits<std::int32_t>;
  const long long value =
      std::clamp<long long>(std::strtoll(text, nullptr, base), Limits::min(), Limits::max());
  return static_cast<std::uint32_t>(value);
}

}  // namespace quillmark
