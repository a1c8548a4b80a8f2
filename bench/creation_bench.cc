// What identifying font files costs beyond reading them: QM_CreateSpecifier over every font file below the
// given paths, on one thread and on two, against loops that read the same files in 64 KiB blocks and sum them
// with libdeflate's CRC-32 and with zlib's. The first of these is the limit (zlib's, where libdeflate is
// missing). All run in turns, in one process, over files that a first pass has brought into the page cache.
//   creation_bench PATH...
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>
#ifdef QM_HAVE_LIBDEFLATE
#include <libdeflate.h>
#endif

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <thread>
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

// The font files below the paths: all, by size, and the collections.
struct Found {
  Files all, small, large, collections;

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
    if (path.extension() == ".ttc") collections.Add(path.string(), size);
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

std::atomic<std::uint32_t> identified_faces = 0;
std::uint32_t crc_sum = 0;  // keeps the loops' results alive

// Takes files from the list until none is left.
void IdentifyRest(const Files& files, std::atomic<std::size_t>& next) {
  for (std::size_t i = next++; i < files.paths.size(); i = next++) {
    QM_FontArray* array = nullptr;
    if (QM_CreateSpecifier(files.paths[i].c_str(), 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) continue;
    std::uint32_t count = 0;
    (void)QM_GetFontCount(array, &count);
    identified_faces += count;
    (void)QM_SpecifierFree(array);
  }
}

void Identify(const Files& files) {
  identified_faces = 0;
  std::atomic<std::size_t> next = 0;
  IdentifyRest(files, next);
}

void IdentifyOnTwoThreads(const Files& files) {
  identified_faces = 0;
  std::atomic<std::size_t> next = 0;
  std::thread other([&] { IdentifyRest(files, next); });
  IdentifyRest(files, next);
  other.join();
}

template <typename Crc32>
void ReadAndSum(const Files& files, Crc32 crc32_of) {
  static std::array<unsigned char, 65536> block;
  for (const std::string& path : files.paths) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) continue;
    std::uint32_t crc = 0;
    for (ssize_t count; (count = ::read(file, block.data(), block.size())) > 0;) {
      crc = crc32_of(crc, block.data(), static_cast<std::size_t>(count));
    }
    ::close(file);
    crc_sum += crc;
  }
}

void ReadAndSumWithZlib(const Files& files) {
  ReadAndSum(files, [](std::uint32_t crc, const unsigned char* bytes, std::size_t size) {
    return static_cast<std::uint32_t>(::crc32_z(crc, bytes, size));
  });
}

#ifdef QM_HAVE_LIBDEFLATE
void ReadAndSumWithLibdeflate(const Files& files) { ReadAndSum(files, ::libdeflate_crc32); }
#endif

struct Row {
  const char* name;
  void (*run)(const Files&);
};
// The first is the limit that the others are compared with.
constexpr Row kRows[] = {
#ifdef QM_HAVE_LIBDEFLATE
    {"read, libdeflate's crc32", ReadAndSumWithLibdeflate},
#endif
    {"read, zlib's crc32", ReadAndSumWithZlib},
    {"QM_CreateSpecifier", Identify},
    {"the same on two threads", IdentifyOnTwoThreads},
};

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
  for (const Row& row : kRows) row.run(files);
  std::array<std::vector<double>, std::size(kRows)> seconds;
  std::array<std::vector<double>, std::size(kRows)> ratios;
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
      seconds[i].push_back(Seconds(kRows[i].run, files));
      ratios[i].push_back(seconds[i].back() / seconds[0].back());
    }
  }
  const auto count = static_cast<double>(files.paths.size());
  std::printf("%s: %.0f files, %.1f MB, %u faces\n", what, count, files.bytes / 1e6, identified_faces.load());
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    const double median = Median(seconds[i]);
    std::printf("  %-26s %9.1f %10.0f %9.1f %8.2f\n", kRows[i].name, files.bytes / 1e6 / median,
                count / median, median / count * 1e6, Median(ratios[i]));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const Found files = FindFiles(argc, argv);
  if (files.all.paths.empty()) {
    std::fprintf(stderr, "usage: creation_bench PATH...  (no font files found)\n");
    return 2;
  }
  std::printf("%-28s %9s %10s %9s %8s\n", "", "MB/s", "files/s", "us/file", "ratio");
  Measure("all files", files.all);
  Measure("below 100 KB", files.small);
  Measure("100 KB and more", files.large);
  Measure("collections", files.collections);
  std::printf("Medians of %d rounds; crc sum %x.\n", kRounds, crc_sum);
  return 0;
}
