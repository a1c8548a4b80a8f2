#include "faces/face.h"

#include <array>
#include <cstdio>
#include <stdexcept>

namespace quillmark::tool {
namespace {

constexpr std::uint32_t kMaxStyles = 32;
constexpr std::int32_t kStyleBytes = 512;
constexpr std::int32_t kClassBytes = 1024;  // more than a class of the table may have

}  // namespace

void FreeArray::operator()(QM_FontArray* array) const { QM_SpecifierFree(array); }

std::vector<std::string> StylesOf(const std::string& primary_name, const std::string& secondary_name) {
  std::array<std::array<char, kStyleBytes>, kMaxStyles> texts;
  std::array<char*, kMaxStyles> buffers;
  for (std::size_t i = 0; i < kMaxStyles; ++i) buffers[i] = texts[i].data();
  std::uint32_t count = 0;
  try {
    if (QM_GetStyles(primary_name.c_str(), secondary_name.c_str(), kMaxStyles, kStyleBytes, &count,
                     buffers.data()) != 0) {
      return {};
    }
  } catch (const std::runtime_error&) {
    return {};  // the keyword table lacks an array: no style is known
  }
  std::vector<std::string> styles;
  for (std::uint32_t i = 0; i < count; ++i) styles.emplace_back(texts[i].data());
  return styles;
}

std::string ClassOf(const std::string& family, const char* alternate) {
  std::array<char, kClassBytes> buffer;
  if (QM_GetClassificationFromFamily(family.c_str(), alternate, buffer.data(), kClassBytes) != 0) return {};
  return buffer.data();
}

std::string Hex(std::uint32_t value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(value));
  return text;
}

}  // namespace quillmark::tool
