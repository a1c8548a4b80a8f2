// The work of one creation against what it was charged: the input as a font file, under an extension that its
// first byte chooses, or with the rest of it as a printer font or a sidecar beside it. Looks for inputs whose
// work is charged too little: with libFuzzer the edges that run for each charged step are its signal, and a
// creation that runs many times its budget is a finding.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "api/creation.h"
#include "builders/memory_files.h"
#include "quillmark/quillmark.h"

namespace {

std::uint64_t executed_edges = 0;

// A step stands for about a nanosecond, in which a few edges run.
constexpr std::uint64_t kMostEdgesPerStep = 16;
constexpr std::uint64_t kEdgesOfAnyCreation = 2'000'000;

}  // namespace

// The core of this target is compiled to call this for each edge.
extern "C" void quillmark_count_edge() { ++executed_edges; }

#ifdef QM_HAVE_LIBFUZZER
// Counters that libFuzzer takes for coverage: a higher ratio of edges to steps is a new feature.
__attribute__((section("__libfuzzer_extra_counters"))) static std::uint8_t ratio_counters[64 * 8];
#endif

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr const char* kNames[] = {"/f.ttf", "/f.otf", "/f.ttc", "/f.dfont", "/f"};
  if (size < 3) return 0;
  const std::string font = kNames[data[0] % std::size(kNames)];
  const std::string bytes(data + 3, data + size);
  const std::size_t cut = bytes.size() * data[1] / 256;
  std::map<std::string, std::string> files;
  switch (data[2] % 4) {
    case 0:
      files = {{font, bytes}};
      break;
    case 1:
      files = {{font, bytes.substr(0, cut)}, {"/._" + font.substr(1), bytes.substr(cut)}};
      break;
    case 2:
      files = {{font, bytes.substr(0, cut)}, {"/resource.frk/" + font.substr(1), bytes.substr(cut)}};
      break;
    default:
      files = {{font, bytes.substr(0, cut)}, {"/Quill", bytes.substr(cut)}};
  }
  const quillmark::MemoryFiles system(std::move(files));
  executed_edges = 0;
  const quillmark::CreationResult result = quillmark::CreateFaces(system, font, QM_ATTRIBUTES_ALL);
  const std::uint64_t edges = executed_edges;
#ifdef QM_HAVE_LIBFUZZER
  const std::uint64_t ratio = 8 * edges / (result.charged_steps + 1);
  const auto row = static_cast<std::size_t>(std::min<std::uint64_t>(ratio, 63));
  const auto magnitude = static_cast<std::size_t>(std::bit_width(edges) / 4 % 8);
  ratio_counters[row * 8 + magnitude] = 1;
#endif
  if (edges > kEdgesOfAnyCreation + kMostEdgesPerStep * result.charged_steps) {
    std::fprintf(stderr, "%llu edges for %llu steps\n", static_cast<unsigned long long>(edges),
                 static_cast<unsigned long long>(result.charged_steps));
    std::abort();
  }
  return 0;
}
