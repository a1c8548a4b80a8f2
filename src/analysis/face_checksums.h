// The checksums that identify the data of one face. Hosts store and compare them: every step is fixed.
// Missing handles, resources and files leave a running CRC as it was; a result of 0 means that nothing was
// read. Tests: tests/analysis/face_checksums_test.cc.
#ifndef QUILLMARK_ANALYSIS_FACE_CHECKSUMS_H_
#define QUILLMARK_ANALYSIS_FACE_CHECKSUMS_H_

#include <cstdint>

#include "analysis/fond_kerning.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

class QuillmarkResourceFile;

// Continues `crc` over the POST resources of the style's printer font file, or answers that file's own
// checksum.
std::uint32_t ChecksumPrinterFile(QuillmarkResourceFile* resourceFile, Handle fond, std::int16_t style,
                                  std::uint32_t crc);
// Continues `crc` over the style's `sfnt` resources, or else over its bitmaps.
std::uint32_t ChecksumNFNTsfntFONT(QuillmarkResourceFile* resourceFile, Handle fond, std::int16_t style,
                                   std::uint32_t crc);
// Byte sum over the style's part of the FOND's kerning table.
std::uint32_t GetKestineChecksum(Handle fond, std::int16_t style);
// The current checksum; the one of the earlier scheme goes to `fileChecksum`.
std::uint32_t GetOmbreluxChecksum(const OmString& path, QuillmarkResourceFile* resourceFile, Handle fond,
                                  std::int16_t style, bool wantDataForkChecksum, std::uint32_t& fileChecksum);

// While one of these lives on a thread, the kerning table of its FOND is walked once for all styles. The FOND
// must keep its data as long. They may nest; the innermost one serves.
class FondKerningScope {
 public:
  explicit FondKerningScope(Handle fond);
  ~FondKerningScope();
  FondKerningScope(const FondKerningScope&) = delete;
  FondKerningScope& operator=(const FondKerningScope&) = delete;

 private:
  FondKerning kerning_;
  FondKerning* const outer_;
};

}  // namespace quillmark

#endif
