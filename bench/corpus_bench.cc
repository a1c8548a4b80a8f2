// One row of the table that bench/run prints, in a process of its own so that its peak memory is its own:
// runs over the files that a list names, one path a line, and prints seconds, faces, and files with a face.
//   corpus_bench limit|limit-zlib|look-ups|names|THREADS LIST
// "limit" reads and sums the files; "look-ups" asks the file system what a request asks it, and opens the
// files; "names" asks for the names, version and kind of their faces; a number identifies them through the C
// interface with so many threads, which take files from one shared list. The first file is done once before:
// that loads what is loaded once a process.
#include <atomic>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "bench/identify_file.h"
#include "bench/measure.h"
#include "bench/read_and_sum.h"
#include "platform/files/font_file.h"

namespace {

using namespace quillmark;

using FacesOfFile = std::uint32_t (*)(const std::string& path);

std::atomic<std::uint32_t> sums = 0;  // keeps the results of the loops alive

std::uint32_t SumBest(const std::string& path) {
  sums += bench::ReadAndSum(path, bench::BestCrc);
  return 0;
}

std::uint32_t SumZlib(const std::string& path) {
  sums += bench::ReadAndSum(path, bench::ZlibCrc);
  return 0;
}

std::uint32_t LookUp(const std::string& path) {
  FileAccess access;
  FontFile file(access, path);
  (void)file.ResourceFork();
  (void)file.Finder();
  (void)file.Data();
  return 0;
}

FacesOfFile WorkOf(std::string_view row) {
  if (row == "limit") return SumBest;
  if (row == "limit-zlib") return SumZlib;
  if (row == "look-ups") return LookUp;
  return row == "names" ? bench::NamesOfFile : bench::IdentifyFile;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view row = argc == 3 ? argv[1] : "";
  const int threads = row.empty() || !std::isdigit(row.front()) ? 1 : std::atoi(row.data());
  std::vector<std::string> files;
  std::ifstream list(argc == 3 ? argv[2] : "");
  for (std::string path; std::getline(list, path);) files.push_back(path);
  if (files.empty() || row.empty() || threads < 1) {
    std::fprintf(stderr, "usage: corpus_bench limit|limit-zlib|look-ups|names|THREADS LIST\n");
    return 2;
  }
  const FacesOfFile work = WorkOf(row);

  std::atomic<std::size_t> next = 0;
  std::atomic<std::uint32_t> faces = 0;
  std::atomic<std::uint32_t> files_with_faces = 0;
  const auto take_files = [&] {
    for (std::size_t i; (i = next++) < files.size();) {
      const std::uint32_t found = work(files[i]);
      faces += found;
      files_with_faces += found > 0 ? 1 : 0;
    }
  };
  (void)work(files.front());
  const double seconds = bench::Seconds([&] {
    std::vector<std::jthread> others;
    for (int i = 1; i < threads; ++i) others.emplace_back(take_files);
    take_files();
  });
  std::printf("%.6f %u %u\n", seconds, faces.load(), files_with_faces.load());
  return 0;
}
