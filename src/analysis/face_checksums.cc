#include "analysis/face_checksums.h"

#include <optional>
#include <string>
#include <utility>

#include "analysis/checksum.h"
#include "analysis/checksum_memory.h"
#include "platform/cf_ref.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr int kFirstPostID = 501;
constexpr int kLastPostID = 32767;

thread_local FondKerning* current_kerning = nullptr;

// Calls `ask` with the kerning of the FOND: that of the scope when it is the scope's FOND.
template <typename Ask>
std::uint32_t AskKerning(Bytes fond, Ask ask) {
  if (current_kerning != nullptr && current_kerning->Describes(fond)) return ask(*current_kerning);
  FondKerning kerning(fond);
  return ask(kerning);
}

// Continues `crc` over a resource when there is one; a missing one has no bytes.
std::uint32_t AddResource(QuillmarkResourceFile& file, ResType type, std::int16_t id, std::uint32_t crc) {
  ChecksumMemory* const memory = ChecksumMemory::Current();
  const auto sum = [&file, type, id] {
    const ResourceHandle resource(file.getResourceHandleForType(type, id));
    SummedBytes summed;
    summed.Add(HandleBytes(resource.get()));
    return summed;
  };
  return Remember(memory ? &memory->resources[file.file()] : nullptr, {type, id}, sum).Continue(crc);
}

// The POST resources of a printer font file, up to the first that is missing or empty; nothing when neither
// fork holds a resource map.
std::optional<SummedBytes> SumPrinterFont(CFStringRef path) {
  const ResourceFileHolder file(AllocateResourceFile(path, true));
  if (file.get() == nullptr) return std::nullopt;
  SummedBytes summed;
  for (int id = kFirstPostID; id <= kLastPostID; ++id) {
    const ResourceHandle segment(
        getHandleOfTypeAndResID(file.get(), FourCharCode("POST"), static_cast<std::int16_t>(id)));
    const Bytes bytes = HandleBytes(segment.get());
    if (bytes.empty()) break;
    summed.Add(bytes);
  }
  return summed;
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
  const std::string path_text = OmString(path.get()).str();
  ChecksumMemory* const memory = ChecksumMemory::Current();
  const auto segments = Remember(memory ? &memory->printer_fonts : nullptr, path_text,
                                 [&path] { return SumPrinterFont(path.get()); });
  if (segments) return segments->Continue(crc);
  // A printer font without resources stands for itself: its checksum does not continue the running one.
  return WholeFileChecksum(path_text, nullptr).value_or(crc);
}

std::uint32_t ChecksumNFNTsfntFONT(QuillmarkResourceFile* resourceFile, Handle fond, std::int16_t style,
                                   std::uint32_t crc) {
  if (HandleBytes(fond).empty()) return crc;
  const auto ids = getSortedResIDsForStyle(resourceFile, fond, style);
  if (ids.empty()) return crc;  // also without a resource file
  for (const std::int16_t id : ids) crc = AddResource(*resourceFile, FourCharCode("sfnt"), id, crc);
  // Meant as it stands: a CRC that came in non-zero keeps the bitmaps out even when no outline was found.
  if (crc != 0) return crc;
  for (const std::int16_t id : ids) {
    crc = AddResource(*resourceFile, FourCharCode("NFNT"), id, crc);
    crc = AddResource(*resourceFile, FourCharCode("FONT"), id, crc);
  }
  return crc;
}

std::uint32_t GetKestineChecksum(Handle fond, std::int16_t style) {
  return AskKerning(HandleBytes(fond), [style](FondKerning& kerning) { return kerning.SumOfBytes(style); });
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

FondKerningScope::FondKerningScope(Handle fond)
    : kerning_(HandleBytes(fond)), outer_(std::exchange(current_kerning, &kerning_)) {}

FondKerningScope::~FondKerningScope() { current_kerning = outer_; }

}  // namespace quillmark
