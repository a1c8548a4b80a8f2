#include "analysis/face_checksums.h"

#include <optional>
#include <string>

#include "analysis/checksum.h"
#include "analysis/checksum_memory.h"
#include "analysis/fond_kerning.h"
#include "platform/cf_ref.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr int kFirstPostID = 501;
constexpr int kLastPostID = 32767;

// Calls `ask` with the kerning of the FOND: the one remembered when there is one.
template <typename Ask>
std::uint32_t AskKerning(Bytes fond, Ask ask) {
  ChecksumMemory* const memory = ChecksumMemory::Current();
  if (memory == nullptr) {
    FondKerning kerning(fond);
    return ask(kerning);
  }
  if (!memory->kerning || !memory->kerning->Describes(fond)) memory->kerning.emplace(fond);
  return ask(*memory->kerning);
}

// Continues `crc` over a resource when there is one; a missing one has no bytes.
std::uint32_t AddResource(QuillmarkResourceFile* file, ResType type, std::int16_t id, std::uint32_t crc) {
  const ResourceHandle resource(getHandleOfTypeAndResID(file, type, id));
  return CChecksum::icrc(HandleBytes(resource.get()), crc);
}

std::optional<std::uint32_t> WholeFileChecksum(const std::string& path, std::uint32_t* data_fork_checksum) {
  std::uint32_t checksum = 0;
  if (!CChecksum::CalculateFileChecksum(path, &checksum, data_fork_checksum)) return std::nullopt;
  return checksum;
}

}  // namespace

std::uint32_t ChecksumPrinterFile(QuillmarkResourceFile* resourceFile, Handle fond, std::int16_t style,
                                  std::uint32_t crc) {
  const CFRef<CFStringRef> path = Adopt(CreatePrinterPath(resourceFile, fond, style));
  if (!path) return crc;
  const ResourceFileHolder printer_file(AllocateResourceFile(path.get(), true));
  // A printer font without resources stands for itself: its checksum does not continue the running one.
  if (printer_file.get() == nullptr) {
    return WholeFileChecksum(OmString(path.get()).str(), nullptr).value_or(crc);
  }
  for (int id = kFirstPostID; id <= kLastPostID; ++id) {
    const ResourceHandle segment(
        getHandleOfTypeAndResID(printer_file.get(), FourCharCode("POST"), static_cast<std::int16_t>(id)));
    const Bytes bytes = HandleBytes(segment.get());
    if (bytes.empty()) break;
    crc = CChecksum::icrc(bytes, crc);
  }
  return crc;
}

std::uint32_t ChecksumNFNTsfntFONT(QuillmarkResourceFile* resourceFile, Handle fond, std::int16_t style,
                                   std::uint32_t crc) {
  if (HandleBytes(fond).empty()) return crc;
  const auto ids = getSortedResIDsForStyle(resourceFile, fond, style);
  for (const std::int16_t id : ids) crc = AddResource(resourceFile, FourCharCode("sfnt"), id, crc);
  // Meant as it stands: a CRC that came in non-zero keeps the bitmaps out even when no outline was found.
  if (crc != 0) return crc;
  for (const std::int16_t id : ids) {
    crc = AddResource(resourceFile, FourCharCode("NFNT"), id, crc);
    crc = AddResource(resourceFile, FourCharCode("FONT"), id, crc);
  }
  return crc;
}

std::uint32_t GetKestineChecksum(Handle fond, std::int16_t style) {
  return AskKerning(HandleBytes(fond),
                    [style](const FondKerning& kerning) { return kerning.SumOfBytes(style); });
}

std::uint32_t GetOmbreluxChecksum(const OmString& path, QuillmarkResourceFile* resourceFile, Handle fond,
                                  std::int16_t style, bool wantDataForkChecksum,
                                  std::uint32_t& fileChecksum) {
  const std::uint32_t kerning =
      AskKerning(HandleBytes(fond), [style](FondKerning& table) { return table.CrcOfPairs(style); });
  std::uint32_t result = ChecksumPrinterFile(resourceFile, fond, style, kerning);
  if (result == kerning) result = ChecksumNFNTsfntFONT(resourceFile, fond, style, result);
  fileChecksum = result;

  // Kerning alone does not tell a font, so the whole file then stands for the face.
  const bool found_font_data = result != kerning;
  if (found_font_data && !wantDataForkChecksum) return result;
  std::uint32_t data_fork_checksum = 0;
  const auto whole_file = WholeFileChecksum(path.str(), wantDataForkChecksum ? &data_fork_checksum : nullptr);
  if (!whole_file) return result;
  fileChecksum = *whole_file;
  return wantDataForkChecksum ? data_fork_checksum : *whole_file;
}

}  // namespace quillmark
