#include "analysis/face_checksums.h"

#include "analysis/checksum.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

// Continues `crc` over a resource when there is one; a missing one has no bytes.
std::uint32_t AddResource(QuillmarkResourceFile& file, ResType type, std::int16_t id, std::uint32_t crc) {
  const ResourceHandle resource(file.getResourceHandleForType(type, id));
  const Bytes bytes = HandleBytes(resource.get());
  ChargeBytes(file.budget(), bytes.size());
  return CChecksum::icrc(bytes, crc);
}

// Continues `crc` over the POST resources of the style's printer font file; returns that file's own checksum
// instead when it has no resource map.
std::uint32_t ChecksumPrinterFile(const Family& family, std::int16_t style, PrinterFonts& printer_fonts,
                                  std::uint32_t crc) {
  const auto path = family.PrinterFontPath(style);
  if (!path) return crc;
  const PrinterFont& font = printer_fonts.At(*path);
  if (font.segment_sums) return font.segment_sums->Continue(crc);
  return font.whole_checksum.value_or(crc);
}

// Continues `crc` over the style's `sfnt` resources, or else over its bitmaps.
std::uint32_t ChecksumNFNTsfntFONT(QuillmarkResourceFile& resources, const Family& family, std::int16_t style,
                                   std::uint32_t crc) {
  const auto ids = family.getSortedNFNTsForFOND(style);
  for (const std::int16_t id : ids) crc = AddResource(resources, kSfnt, id, crc);
  // Intended: a CRC that was already non-zero on entry leaves the bitmaps out even when no outline was found.
  if (crc != 0) return crc;
  for (const std::int16_t id : ids) {
    crc = AddResource(resources, kNfnt, id, crc);
    crc = AddResource(resources, kFont, id, crc);
  }
  return crc;
}

}  // namespace

std::uint32_t GetKestineChecksum(Family& family, std::int16_t style) {
  return family.kerning().SumOfBytes(style);
}

FaceChecksums GetOmbreluxChecksum(FontFile& file, QuillmarkResourceFile& resources, Family& family,
                                  std::int16_t style, PrinterFonts& printer_fonts) {
  const WorkScope work(file.budget(), Work::kOutlines);
  const std::uint32_t kerning = family.kerning().CrcOfPairs(style);
  std::uint32_t result = ChecksumPrinterFile(family, style, printer_fonts, kerning);
  if (result == kerning) result = ChecksumNFNTsfntFONT(resources, family, style, result);
  // Kerning alone does not identify a font, so the whole file is summed for the face.
  std::uint32_t whole_file = 0;
  if (result == kerning && CChecksum::CalculateFileChecksum(file, &whole_file, nullptr)) result = whole_file;
  return {result, result};
}

FaceChecksums GetOmbreluxChecksum(FontFile& file, bool want_data_fork_checksum) {
  std::uint32_t whole_file = 0;
  std::uint32_t data_fork = 0;
  if (!CChecksum::CalculateFileChecksum(file, &whole_file, &data_fork)) return {};
  return {want_data_fork_checksum ? data_fork : whole_file, whole_file};
}

}  // namespace quillmark
