// What identifying font files costs beyond reading them: QM_CreateSpecifier over every font file below the
// given paths, against a loop that reads the same files in 64 KiB blocks and runs zlib's crc32 over them.
// Both run in turns, in one process, over files that a first pass has brought into the page cache.
//   creation_bench PATH...
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "quillmark/quillmark.h"

namespace {

constexpr int kRounds = 9;
constexpr double kLargeSize = 100e3;

struct Files {
  std::vector<std::string> paths;
  double bytes = 0;

  void Add(const std::string& path, double size) {
    paths.push_back(path);
    bytes += size;
  }
};

// The font files below the paths: all, and by size.
struct Found {
  Files all, small, large;

  void Add(const std::filesystem::path& path) {
    static const std::set<std::string> kExtensions = {".ttf", ".otf", ".ttc", ".dfont", ".suit", ""};
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored) ||
        !kExtensions.contains(path.extension().string())) {
      return;
    }
    const auto size = static_cast<double>(std::filesystem::file_size(path, ignored));
    all.Add(path.string(), size);
    (size < kLargeSize ? small : large).Add(path.string(), size);
  }
};

Found FindFiles(int argc, char** argv) {
  Found files;
  for (int i = 1; i < argc; ++i) {
    files.Add(argv[i]);
    std::error_code ignored;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i], ignored)) {
      files.Add(entry.path());
    }
  }
  return files;
}

std::uint32_t identified_faces = 0;
uLong crc_sum = 0;  // keeps the loop's result alive

void Identify(const Files& files) {
  identified_faces = 0;
  for (const std::string& path : files.paths) {
    QM_FontArray* array = nullptr;
    if (QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) continue;
    std::uint32_t count = 0;
    (void)QM_GetFontCount(array, &count);
    identified_faces += count;
    (void)QM_SpecifierFree(array);
  }
}

void ReadAndSum(const Files& files) {
  static std::array<unsigned char, 65536> block;
  for (const std::string& path : files.paths) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) continue;
    uLong crc = ::crc32(0, nullptr, 0);
    for (ssize_t count; (count = ::read(file, block.data(), block.size())) > 0;) {
      crc = ::crc32(crc, block.data(), static_cast<uInt>(count));
    }
    ::close(file);
    crc_sum += crc;
  }
}

double Seconds(void (*run)(const Files&), const Files& files) {
  const auto start = std::chrono::steady_clock::now();
  run(files);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + kRounds / 2, values.end());
  return values[kRounds / 2];
}

void Measure(const char* what, const Files& files) {
  if (files.paths.empty()) return;
  ReadAndSum(files);
  Identify(files);
  std::vector<double> identify;
  std::vector<double> read;
  std::vector<double> ratio;
  for (int round = 0; round < kRounds; ++round) {
    identify.push_back(Seconds(Identify, files));
    read.push_back(Seconds(ReadAndSum, files));
    ratio.push_back(identify.back() / read.back());
  }
  const double seconds = Median(identify);
  const double read_seconds = Median(read);
  const auto count = static_cast<double>(files.paths.size());
  std::printf("%-10s %7.0f %8.1f %8u %9.1f %10.0f %9.1f %10.0f %7.2f\n", what, count, files.bytes / 1e6,
              identified_faces, files.bytes / 1e6 / seconds, count / seconds,
              files.bytes / 1e6 / read_seconds, count / read_seconds, Median(ratio));
}

}  // namespace

int main(int argc, char** argv) {
  const Found files = FindFiles(argc, argv);
  if (files.all.paths.empty()) {
    std::fprintf(stderr, "usage: creation_bench PATH...  (no font files found)\n");
    return 2;
  }
  std::printf("%36s %20s %20s\n", "", "QM_CreateSpecifier", "read and crc32");
  std::printf("%-10s %7s %8s %8s %9s %10s %9s %10s %7s\n", "files", "number", "MB", "faces", "MB/s",
              "files/s", "MB/s", "files/s", "ratio");
  Measure("all", files.all);
  Measure("< 100 KB", files.small);
  Measure(">= 100 KB", files.large);
  std::printf("Medians of %d rounds; crc sum %lx.\n", kRounds, crc_sum);
  return 0;
}
