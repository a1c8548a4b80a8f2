#include "analysis/printer_font.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "analysis/checksum.h"
#include "platform/text/text_encoding.h"
#include "quillmark/quillmark.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr int kFirstPostId = 501;
constexpr int kLastPostId = 32767;
constexpr std::size_t kFullPostSize = 2048;  // bytes of a segment whose text continues in the next one
constexpr std::size_t kDataForkHeaderSize = 6000;

// Passes over a header, which is searched for some ten keys.
constexpr std::uint64_t kHeaderSearches = 16;

// The header in the first two POST resources, and the sum of all up to the first that is missing or empty.
void ReadSegments(QuillmarkResourceFile& file, std::uint32_t request, PrinterFont& font) {
  font.has_map = true;
  if (request & kDataChecksums) font.segment_sums.emplace();
  bool in_header = true;
  const int last = font.segment_sums ? kLastPostId : kFirstPostId + 1;
  for (int id = kFirstPostId; id <= last; ++id) {
    const ResourceHandle segment(file.getResourceHandleForType(kPost, id));
    const Bytes bytes = HandleBytes(segment.get());
    if (bytes.empty()) break;
    in_header = in_header && id <= kFirstPostId + 1 && (id == kFirstPostId || bytes.size() != kFullPostSize);
    if (in_header) {
      ChargeBytes(file.budget(), kHeaderSearches * bytes.size());
      font.segments.push_back(ReadPostHeader(bytes, request & QM_ATTRIBUTE_FOUNDRY));
    }
    ChargeBytes(file.budget(), bytes.size());
    if (font.segment_sums) font.segment_sums->Add(bytes);
  }
}

std::optional<PostScriptHeader> ReadDataForkHeader(const RegularFile& file, bool wants_foundry) {
  std::array<std::uint8_t, kDataForkHeaderSize> buffer;
  const std::string_view data = AsText(Bytes(buffer).first(file.ReadAt(0, buffer)));
  if (data.empty()) return std::nullopt;
  return ReadPostScriptHeader(data, wants_foundry);
}

}  // namespace

PrinterFont ReadPrinterFont(FontFile& file, std::uint32_t request) {
  PrinterFont font;
  font.is_file = file.Status().regular;
  if (font.is_file) font.length = file.TotalLength();
  if (font.is_file) font.codes = file.Finder();
  const ResourceFileHolder resources(AllocateResourceFile(file, true));
  if (resources.get() != nullptr) ReadSegments(*resources.get(), request, font);
  if (font.segments.empty() && file.Data()) {
    ChargeBytes(file.budget(), kHeaderSearches * kDataForkHeaderSize);
    font.data_fork = ReadDataForkHeader(*file.Data(), request & QM_ATTRIBUTE_FOUNDRY);
  }
  if (!(request & kDataChecksums)) return font;
  std::uint32_t checksum = 0;
  // The Resource Manager finds no file at a path that is not UTF-8.
  if (!font.has_map && IsValidUtf8(file.path()) &&
      CChecksum::CalculateFileChecksum(file, &checksum, nullptr)) {
    font.whole_checksum = checksum;
  }
  return font;
}

const PrinterFont& PrinterFonts::At(const std::string& path) {
  const auto found = cache_.find(path);
  if (found != cache_.end()) return found->second;
  const WorkScope work(access_.budget(), Work::kPrinterFonts);
  FontFile file(access_, path);
  return cache_.emplace(path, ReadPrinterFont(file, request_)).first->second;
}

}  // namespace quillmark
