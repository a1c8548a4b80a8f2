// What an update of unchanged files cannot do without: walks a folder, with an lstat of each file. Prints how
// many files there are.
//   walk_bench FOLDER
#include <ftw.h>

#include <cstdio>

int main(int argc, char** argv) {
  constexpr int kOpenFolders = 64;
  static long files = 0;
  const auto count = [](const char* /*path*/, const struct stat* /*found*/, int kind, struct FTW* /*place*/) {
    if (kind != FTW_D) ++files;
    return 0;
  };
  if (argc != 2 || ::nftw(argv[1], count, kOpenFolders, FTW_PHYS) != 0) {
    std::fprintf(stderr, "usage: walk_bench FOLDER\n");
    return 2;
  }
  std::printf("%ld\n", files);
  return 0;
}
