// Writes the seeds of resource_map_fuzzer into a folder: make_resource_map_seeds
// fuzz/seeds/resource_map_fuzzer
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kFond = FourCharCode("FOND");
constexpr std::uint32_t kNfnt = FourCharCode("NFNT");
constexpr std::uint32_t kSfnt = FourCharCode("sfnt");

FondBuilder Family(std::int16_t id) {
  return FondBuilder(id)
      .Association(9, 0, 1)
      .Association(12, 1, 2)
      .StyleString("Times")
      .StyleString("\x03")
      .StyleString("-Bold")
      .StyleIndex(1, 2);
}

ResourceForkBuilder BitmapFamily() {
  return ResourceForkBuilder()
      .Add(kFond, 128, Family(128).Build(), "Times")
      .Add(kNfnt, 1, "a")
      .Add(kNfnt, 2, "b");
}

ResourceForkBuilder Outlines() {
  return ResourceForkBuilder()
      .Add(kFond, 128, Family(128).Association(0, 2, 3).Kerning(0, {{65, 66, -7}}).Build(), "TimesMM_1")
      .Add(kFond, 129, FondBuilder(129).Association(0, 0, 4).Build(), "A-CID-Gothic")
      .Add(kSfnt, 3, "OTTO....")
      .Add(kSfnt, 4, "true....");
}

ResourceForkBuilder Japanese() {
  return ResourceForkBuilder()
      .Add(kFond, 16384, FondBuilder(16384).Association(0, 0, 1).StyleString("Ryumin-Light-83pv").Build(),
           "\x96\xBE")
      .Add(kSfnt, 1, "typ1....")
      .Add(FourCharCode("FONT"), 1, "x");
}

ResourceForkBuilder PrinterFont() {
  return ResourceForkBuilder()
      .Add(FourCharCode("POST"), 501, "\x01%!PS")
      .Add(FourCharCode("POST"), 502, "\x05");
}

}  // namespace
}  // namespace quillmark

int main(int argc, char** argv) {
  using namespace quillmark;
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_resource_map_seeds FOLDER\n");
    return 2;
  }
  const struct {
    const char* name;
    ResourceForkBuilder fork;
  } seeds[] = {
      {"bitmap_family", BitmapFamily()},
      {"bitmap_family_map_first", BitmapFamily().MapFirst()},
      {"japanese", Japanese()},
      {"outlines", Outlines()},
      {"outlines_odd_order", Outlines().OddOrder()},
      {"printer_font", PrinterFont()},
  };
  std::filesystem::create_directories(argv[1]);
  for (const auto& seed : seeds) {
    const std::string bytes = seed.fork.Build();
    std::ofstream(std::filesystem::path(argv[1]) / seed.name, std::ios::binary) << bytes;
  }
}
