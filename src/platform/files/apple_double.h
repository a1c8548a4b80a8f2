// AppleDouble files: a header, a table of entries, and their bytes anywhere in the file. They carry what a
// file system cannot hold: entry 2 is a resource fork, entry 9 Finder information. Layout:
// "AppleSingle/AppleDouble Formats for Foreign Files". Tests: tests/platform/forks_test.cc;
// fuzz/apple_double_fuzzer.cc.
#ifndef QUILLMARK_PLATFORM_FILES_APPLE_DOUBLE_H_
#define QUILLMARK_PLATFORM_FILES_APPLE_DOUBLE_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/files/atomic_file.h"
#include "platform/files/forks.h"

namespace quillmark {

inline constexpr std::uint32_t kAppleDoubleMagic = 0x00051607;
inline constexpr std::uint32_t kAppleDoubleResourceFork = 2;
inline constexpr std::uint32_t kAppleDoubleFinderInfo = 9;

// The range of an entry's bytes in the AppleDouble file.
struct AppleDoubleEntry {
  std::uint32_t start = 0;
  std::uint32_t length = 0;
};

// The first entry of that number, of any version of the format; nothing when there is none or it passes the
// end of the file. Only the header and the table are read.
std::optional<AppleDoubleEntry> FindAppleDoubleEntry(const Fork& file, std::uint32_t number);

// Replaces the bytes of that entry, whole or not at all; `produce` is called twice and hands over the new
// bytes each time. Other entries keep their bytes; entries after it move. False, changing nothing, when the
// entry shares bytes with another one or with the header.
[[nodiscard]] bool ReplaceAppleDoubleEntry(const std::string& path, std::uint32_t number,
                                           const std::function<bool(const ByteSink&)>& produce);

}  // namespace quillmark

#endif
