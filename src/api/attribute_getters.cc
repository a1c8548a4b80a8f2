// The exported queries that copy one field of one specifier, or compute a value from one. Tests:
// tests/api/queries_test.cc; tests/c/contract.c.
#include <algorithm>
#include <string_view>

#include "analysis/windows_font_file_name.h"
#include "api/buffers.h"
#include "api/font_array.h"
#include "quillmark/quillmark.h"

using quillmark::CopyOut;
using quillmark::OmString;
using quillmark::QM_FontSpecifier;
using quillmark::WithFaceThatHolds;

namespace {

std::int32_t GetString(const QM_FontArray* array, std::uint32_t index, char* buffer, std::int32_t bufferSize,
                       std::uint32_t attribute, OmString QM_FontSpecifier::*field) {
  return WithFaceThatHolds(array, index, attribute, buffer, [&](const QM_FontSpecifier& face) {
    CopyOut((face.*field).str(), buffer, bufferSize);
  });
}

// Kind and family are fetched before the index is looked at: a bad one throws std::out_of_range. Hosts rely
// on it.
std::int32_t GetStringUnchecked(const QM_FontArray* array, std::uint32_t index, char* buffer,
                                std::int32_t bufferSize, std::uint32_t attribute,
                                OmString QM_FontSpecifier::*field) {
  if (array && buffer) static_cast<void>(array->view(index));
  return GetString(array, index, buffer, bufferSize, attribute, field);
}

std::int32_t GetNumber(const QM_FontArray* array, std::uint32_t index, std::uint32_t* value,
                       std::uint32_t attribute, std::uint32_t QM_FontSpecifier::*field) {
  return WithFaceThatHolds(array, index, attribute, value,
                           [&](const QM_FontSpecifier& face) { *value = face.*field; });
}

// From the first digit on, as far as digits, "." and "-" go.
std::string_view NormalizedVersion(std::string_view version) {
  constexpr std::string_view kDigits = "0123456789";
  version.remove_prefix(std::min(version.find_first_of(kDigits), version.size()));
  return version.substr(0, version.find_first_not_of("0123456789.-"));
}

}  // namespace

std::int32_t QM_GetKindName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                            std::int32_t bufferSize) {
  return GetStringUnchecked(array, index, buffer, bufferSize, QM_ATTRIBUTE_KIND, &QM_FontSpecifier::kind);
}

std::int32_t QM_GetFamilyName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                              std::int32_t bufferSize) {
  return GetStringUnchecked(array, index, buffer, bufferSize, QM_ATTRIBUTE_FAMILY, &QM_FontSpecifier::family);
}

std::int32_t QM_GetPostScriptName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                                  std::int32_t bufferSize) {
  return GetString(array, index, buffer, bufferSize, QM_ATTRIBUTE_POSTSCRIPT_NAME,
                   &QM_FontSpecifier::postScriptName);
}

std::int32_t QM_GetFullName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                            std::int32_t bufferSize) {
  return GetString(array, index, buffer, bufferSize, QM_ATTRIBUTE_FULL_NAME, &QM_FontSpecifier::fullName);
}

std::int32_t QM_GetDisplayName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                               std::int32_t bufferSize) {
  return GetString(array, index, buffer, bufferSize, QM_ATTRIBUTE_DISPLAY_NAME,
                   &QM_FontSpecifier::displayName);
}

std::int32_t QM_GetPlatform(const QM_FontArray* array, std::uint32_t index, char* buffer,
                            std::int32_t bufferSize) {
  return GetString(array, index, buffer, bufferSize, QM_ATTRIBUTE_PLATFORM, &QM_FontSpecifier::platform);
}

std::int32_t QM_GetPrinterFont(const QM_FontArray* array, std::uint32_t index, char* buffer,
                               std::int32_t bufferSize) {
  return GetString(array, index, buffer, bufferSize, QM_ATTRIBUTE_OUTLINE_FILE_NAME,
                   &QM_FontSpecifier::outlineFileName);
}

std::int32_t QM_GetWindowsFullName(const QM_FontArray* array, std::uint32_t index, char* buffer,
                                   std::int32_t bufferSize) {
  bool is_empty = false;
  const auto copy = [&](const QM_FontSpecifier& face) {
    is_empty = face.windowsFullName.empty();
    if (!is_empty) CopyOut(face.windowsFullName.str(), buffer, bufferSize);
  };
  const auto status = WithFaceThatHolds(array, index, QM_ATTRIBUTE_WINDOWS_FULL_NAME, buffer, copy);
  return is_empty ? QM_GetFullName(array, index, buffer, bufferSize) : status;
}

std::int32_t QM_GetVersion(const QM_FontArray* array, std::uint32_t index, char* buffer,
                           std::int32_t bufferSize) {
  const auto copy = [&](const QM_FontSpecifier& face) {
    CopyOut(NormalizedVersion(face.version.str()), buffer, bufferSize);
  };
  return WithFaceThatHolds(array, index, QM_ATTRIBUTE_VERSION, buffer, copy);
}

// Every bad argument gives 1 here, an index out of range too; so does a missing outline file name.
std::int32_t QM_GetWindowsMMFile(const QM_FontArray* array, std::uint32_t index, char* buffer,
                                 std::int32_t bufferSize) {
  if (!array || !buffer || index >= array->size()) return QM_STATUS_FAILED;
  const QM_FontSpecifier& face = array->view(index);
  if (!(face.attributes & QM_ATTRIBUTE_WINDOWS_MM_FILE)) return QM_STATUS_NOT_HELD;
  if (!(face.attributes & QM_ATTRIBUTE_OUTLINE_FILE_NAME)) return QM_STATUS_FAILED;
  OmString name;
  if (!quillmark::GetWindowsMMMFontNameFromPrinterFontName(face.outlineFileName, &name)) {
    return QM_STATUS_FAILED;
  }
  CopyOut(name.str(), buffer, bufferSize);
  return QM_STATUS_OK;
}

std::int32_t QM_GetKerningChecksum(const QM_FontArray* array, std::uint32_t index, std::uint32_t* value) {
  return GetNumber(array, index, value, QM_ATTRIBUTE_KERNING_CHECKSUM, &QM_FontSpecifier::kerningChecksum);
}

std::int32_t QM_GetQuillmarkChecksum(const QM_FontArray* array, std::uint32_t index, std::uint32_t* value) {
  return GetNumber(array, index, value, QM_ATTRIBUTE_CHECKSUM, &QM_FontSpecifier::checksum);
}

std::int32_t QM_GetLegacyQuillmarkChecksum(const QM_FontArray* array, std::uint32_t index,
                                           std::uint32_t* value) {
  return GetNumber(array, index, value, QM_ATTRIBUTE_LEGACY_CHECKSUM, &QM_FontSpecifier::legacyChecksum);
}

std::int32_t QM_GetOutlineFileSize(const QM_FontArray* array, std::uint32_t index, std::uint32_t* value) {
  return GetNumber(array, index, value, QM_ATTRIBUTE_OUTLINE_FILE_SIZE, &QM_FontSpecifier::outlineFileSize);
}
