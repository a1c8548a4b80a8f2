// Takes the input as the AppleDouble sidecar of an empty font file: looks for its fork and Finder
// information, once in memory and once through the file, which must agree, and reads and rewrites a resource
// map found in it.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>

#include "platform/files/apple_double.h"
#include "platform/files/font_file.h"
#include "platform/resource_manager/resource_map.h"

namespace {

using quillmark::Bytes;
using quillmark::Fork;
using quillmark::ResourceMap;

void Check(bool holds) {
  if (!holds) std::abort();
}

// A font of this process and its sidecar, removed at exit.
class FontInFolder {
 public:
  FontInFolder()
      : folder_(std::filesystem::temp_directory_path() / ("quillmark-fuzz-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(folder_);
    std::ofstream(folder_ / "font").flush();
  }
  ~FontInFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  FontInFolder(const FontInFolder&) = delete;
  FontInFolder& operator=(const FontInFolder&) = delete;

  std::string path() const { return (folder_ / "font").string(); }
  void WriteSidecar(const std::string& bytes) const {
    std::ofstream out(folder_ / "._font", std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

 private:
  std::filesystem::path folder_;
};

// A map that could be laid out anew must be one again, with as many types that hold resources.
void ReadAndRewrite(const Fork& fork) {
  auto map = ResourceMap::Open(fork);
  if (!map) return;
  std::size_t types_with_resources = 0;
  for (std::size_t t = 0; t < 64 && t < map->CountTypes(); ++t) {
    const std::uint32_t type = map->TypeAt(t).value();
    for (std::size_t i = 0; i < 64; ++i) {
      const auto key = map->At(type, i);
      if (!key) break;
      (void)map->Name(*key);
      (void)map->Data(*key);
      Check(map->Find(type, map->ID(*key)).has_value());
    }
  }
  for (std::size_t t = 0; t < map->CountTypes(); ++t) {
    types_with_resources += map->CountResources(map->TypeAt(t).value()) > 0;
  }
  auto bytes = std::make_shared<std::string>();
  const bool written = map->Write([&](Bytes piece) {
    bytes->append(quillmark::AsText(piece));
    return true;
  });
  if (!written) return;
  const auto again = ResourceMap::Open(Fork(bytes));
  Check(again && again->CountTypes() == types_with_resources);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const FontInFolder font;
  const auto bytes = std::make_shared<const std::string>(quillmark::AsText(Bytes(data, size)));
  const Fork sidecar(bytes);
  const auto entry = quillmark::FindAppleDoubleEntry(sidecar, quillmark::kAppleDoubleResourceFork);
  font.WriteSidecar(*bytes);
  quillmark::FileAccess access;
  quillmark::FontFile file(access, font.path());
  const auto& found = file.ResourceFork();
  Check(found.has_value() == (entry && entry->length > 0));
  Check(file.TotalLength() == (found ? entry->length : 0));
  const auto info = quillmark::FindAppleDoubleEntry(sidecar, quillmark::kAppleDoubleFinderInfo);
  const quillmark::FinderInfo codes = file.Finder();
  Check((info && info->length >= 8) || (codes.type == 0 && codes.creator == 0));
  if (found) ReadAndRewrite(sidecar.Part(entry->start, entry->length).value());
  return 0;
}
