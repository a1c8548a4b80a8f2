// What a face of a suitcase costs as suitcases grow: all attributes and getters of suitcases of 1 to 1,000
// faces, each with its own outline resource, as a FOND for each face and as one FOND of many styles.
//   suitcase_bench [ROUNDS]    with 1 round only the two smallest sizes are run
#include <cstdint>
#include <cstdlib>
#include <string>

#include "bench/growth.h"
#include "bench/identify_file.h"
#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"

namespace {

using namespace quillmark;

constexpr int kFaceCounts[] = {1, 10, 100, 1000};
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

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
  const TempFolder folder;
  bench::GrowthTable table(rounds);
  for (const bool one_fond : {false, true}) {
    for (const int face_count : kFaceCounts) {
      if (rounds == 1 && face_count > kFaceCounts[1]) break;
      const std::string path = folder.Write("suitcase.dfont", Suitcase(face_count, one_fond));
      table.Row(one_fond ? "suitcase, one FOND of many styles" : "suitcase, a FOND for each face", face_count,
                "faces", [&] { return bench::IdentifyFile(path); });
    }
  }
  return 0;
}
