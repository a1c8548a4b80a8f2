// What a face of a suitcase costs as suitcases grow: QM_CreateSpecifier over suitcases of 1 to 1,000 faces,
// each with its own outline resource, as a FOND for each face and as one FOND of many styles. The ratio is to
// the cost per face of 10 faces; work that grows with the square of the faces shows as 100 in the last row.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"

namespace {

using namespace quillmark;

constexpr int kFaceCounts[] = {1, 10, 100, 1000};
constexpr int kRounds = 9;
constexpr int kFacesARound = 1000;  // at least, so that small suitcases are timed many times over
constexpr int kFirstId = 128;

std::string Suitcase(int face_count, bool one_fond) {
  ResourceForkBuilder fork;
  FondBuilder shared(kFirstId);
  for (int i = 0; i < face_count; ++i) {
    const auto id = static_cast<std::int16_t>(kFirstId + i);
    const std::string name = "Face" + std::to_string(i);
    fork.Add(FourCharCode("sfnt"), id,
             SfntBuilder::CrossPlatform().MacName(4, name).MacName(6, name).Build());
    if (one_fond) {
      shared.Association(0, static_cast<std::int16_t>(i), id);
    } else {
      fork.Add(FourCharCode("FOND"), id, FondBuilder(id).Association(0, 0, id).Build(), name);
    }
  }
  if (one_fond) fork.Add(FourCharCode("FOND"), kFirstId, shared.Build(), "Faces");
  return fork.Build();
}

// Faces that came out; 0 when the file was not identified.
std::uint32_t Identify(const std::string& path) {
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) return 0;
  std::uint32_t count = 0;
  (void)QM_GetFontCount(array, &count);
  (void)QM_SpecifierFree(array);
  return count;
}

double MicrosecondsPerFace(const std::string& path, int face_count) {
  std::vector<double> rounds;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    for (int faces = 0; faces < kFacesARound; faces += face_count) Identify(path);
    const std::chrono::duration<double, std::micro> spent = std::chrono::steady_clock::now() - start;
    rounds.push_back(spent.count() / std::max(kFacesARound, face_count));
  }
  std::nth_element(rounds.begin(), rounds.begin() + kRounds / 2, rounds.end());
  return rounds[kRounds / 2];
}

}  // namespace

int main() {
  const TempFolder folder;
  std::printf("%-18s %8s %8s %12s %8s\n", "suitcase", "faces", "found", "us per face", "ratio");
  for (const bool one_fond : {false, true}) {
    std::vector<double> costs;
    std::vector<std::uint32_t> found;
    for (const int face_count : kFaceCounts) {
      const std::string path = folder.Write("suitcase.dfont", Suitcase(face_count, one_fond));
      found.push_back(Identify(path));
      costs.push_back(MicrosecondsPerFace(path, face_count));
    }
    for (std::size_t i = 0; i < costs.size(); ++i) {
      std::printf("%-18s %8d %8u %12.2f %8.2f\n", one_fond ? "one FOND" : "a FOND each", kFaceCounts[i],
                  found[i], costs[i], costs[i] / costs[1]);
    }
  }
  return 0;
}
