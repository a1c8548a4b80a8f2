// What a file costs however small it is: a folder of small fonts, identified, against two loops over the same
// files. The limit opens, reads and sums each. The yardstick also asks the file system once for everything
// that can carry a resource fork or Finder information of the file, which no program can leave out and answer
// the same.
//   tiny_bench [FILES [ROUNDS]]
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/identify_file.h"
#include "bench/measure.h"
#include "bench/read_and_sum.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"

namespace {

using namespace quillmark;

constexpr std::size_t kFileBytes = 848;

// What the loops must not be optimised away for.
std::uint32_t sums = 0;
std::uint32_t carriers = 0;

std::string TinyFont(int number) {
  const std::string name = "Tiny" + std::to_string(number);
  std::string font = SfntBuilder::CrossPlatform().MacName(4, name).MacName(6, name).Build();
  if (font.size() > kFileBytes) std::abort();
  font.resize(kFileBytes);
  return font;
}

void CountFile(const std::string& candidate) {
  struct stat found = {};
  if (::stat(candidate.c_str(), &found) == 0 && S_ISREG(found.st_mode)) ++carriers;
}

// The places of platform/files/font_file.h. A path inside a file fails alike for all names, so one is asked
// for.
void LookForForks(const std::string& file) {
  CountFile(file);
  CountFile(file + "/..namedfork/rsrc");
  char names[1024];
  if (::listxattr(file.c_str(), names, sizeof names) > 0) ++carriers;
  const std::size_t slash = file.rfind('/') + 1;
  const std::string folder = file.substr(0, slash);
  const std::string name = file.substr(slash);
  CountFile(folder + "._" + name);
  for (std::size_t end = slash - 1;; end = file.rfind('/', end - 1)) {  // each folder above, nearest first
    CountFile(file.substr(0, end) + "/__MACOSX/" + file.substr(end + 1, slash - end - 1) + "._" + name);
    if (end == 0) break;
  }
  CountFile(folder + ".AppleDouble/" + name);
  CountFile(folder + "resource.frk/" + name);
}

void Limit(const std::vector<std::string>& files) {
  for (const std::string& file : files) sums += bench::ReadAndSum(file, bench::BestCrc);
}

void Yardstick(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    LookForForks(file);
    const int open_file = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat found = {};
    if (open_file >= 0 && ::fstat(open_file, &found) == 0)
      sums += bench::SumAndClose(open_file, bench::BestCrc);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 20'000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 9;
  const TempFolder folder;
  std::vector<std::string> files;
  for (int i = 0; i < count; ++i) {
    files.push_back(folder.Write("tiny" + std::to_string(i) + ".ttf", TinyFont(i)));
  }
  std::uint32_t faces = 0;
  const bench::Turns turns(rounds, {[&] { Limit(files); }, [&] { Yardstick(files); },
                                    [&] {
                                      faces = 0;
                                      for (const std::string& file : files)
                                        faces += bench::IdentifyFile(file);
                                    }});
  std::printf("| %d files of %zu bytes | faces | us/file | files/s | to the limit | to the yardstick |\n",
              count, kFileBytes);
  std::printf("|---|--:|--:|--:|--:|--:|\n");
  const char* const rows[] = {"limit: open, read, CRC-32", "yardstick: the limit and each fork look-up once",
                              "Quillmark, all attributes and getters"};
  for (std::size_t i = 0; i < 3; ++i) {
    const double seconds = turns.MedianOf(i);
    std::printf("| %s | %s | %.2f | %.0f | %.2f | %.2f |\n", rows[i],
                i == 2 ? std::to_string(faces).c_str() : "-", seconds / count * 1e6, count / seconds,
                turns.Ratio(i, 0), turns.Ratio(i, 1));
  }
  return faces == static_cast<std::uint32_t>(count) && sums != 0 ? 0 : 1;
}
