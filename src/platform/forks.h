// The two forks of a Macintosh file and its Finder information, wherever a Linux file system keeps them.
// The data fork is the file itself. The resource fork is the first of these that holds at least one byte:
//   NAME/..namedfork/rsrc, NAME/rsrc; the extended attributes user.com.apple.ResourceFork and
//   user.org.netatalk.ResourceFork; entry 2 of an AppleDouble sidecar (._NAME, the __MACOSX tree of each
//   ancestor folder, nearest first, .AppleDouble/NAME); the raw fork resource.frk/NAME.
// Only regular files are opened (symbolic links are followed), never blocking; files are read, not mapped,
// since a mapping faults when its file shrinks. Paths are bytes as the file system takes them. Tests:
// tests/platform/forks_test.cc; fuzz/apple_double_fuzzer.cc.
#ifndef QUILLMARK_PLATFORM_FORKS_H_
#define QUILLMARK_PLATFORM_FORKS_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "platform/byte_reader.h"

namespace quillmark {

// An open regular file, closed with the last copy. Copies share one block of the file's bytes, so that a
// small file, and the head of a large one, are read once for all who look: use them on one thread.
class RegularFile {
 public:
  // Nothing when the path names no regular file or it cannot be opened for reading. Inside a ForkLookupScope
  // the file opened last is given again while its path is asked for.
  static std::optional<RegularFile> Open(const std::string& path);

  std::uint64_t size() const;  // bytes, as it was when opened
  // Reads at most out.size() bytes from `offset`; returns how many came (fewer at the end or on an error).
  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const;
  // Some bytes from `offset` on, at least one before size() and at most a block. They live until a copy is
  // next asked to read. What cannot be read is zero.
  Bytes BlockAt(std::uint64_t offset) const;

 private:
  class Contents;
  static std::optional<RegularFile> OpenAfresh(const std::string& path);
  explicit RegularFile(std::shared_ptr<Contents> contents);

  std::shared_ptr<Contents> contents_;
};

// Takes bytes in pieces; false when it takes no more.
using ByteSink = std::function<bool(Bytes)>;

// One fork, open for reading: a range of a file, or bytes held in memory (an extended attribute).
class Fork {
 public:
  Fork(RegularFile file, std::uint64_t start, std::uint64_t length);
  explicit Fork(std::shared_ptr<const std::string> bytes);

  std::uint64_t length() const { return length_; }
  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) const;
  // As RegularFile::BlockAt, before length().
  Bytes BlockAt(std::uint64_t offset) const;
  // The bytes [offset, offset + length) as a fork; nothing when they do not all lie inside this one.
  std::optional<Fork> Part(std::uint64_t offset, std::uint64_t length) const;
  // Hands those bytes over in blocks; false when the sink gives up or they cannot be read.
  [[nodiscard]] bool Copy(std::uint64_t offset, std::uint64_t length, const ByteSink& sink) const;

 private:
  std::optional<RegularFile> file_;
  std::shared_ptr<const std::string> bytes_;
  std::uint64_t start_ = 0;
  std::uint64_t length_ = 0;
};

// Where a resource fork was found.
enum class ForkCarrier {
  kNamedFork,          // NAME/..namedfork/rsrc or NAME/rsrc
  kExtendedAttribute,  // user.com.apple.ResourceFork or user.org.netatalk.ResourceFork
  kAppleDouble,        // entry 2 of a sidecar
  kRawFork,            // resource.frk/NAME
};
struct ResourceForkLocation {
  ForkCarrier carrier;
  std::string where;  // path of the carrying file, or name of the extended attribute
  Fork fork;
};

// Whether stat succeeds on `path` and reports a regular file.
bool IsRegularFile(const std::string& path);

std::optional<Fork> OpenDataFork(const std::string& path);
std::optional<ResourceForkLocation> FindResourceFork(const std::string& path);
std::optional<Fork> OpenResourceFork(const std::string& path);

// Length of the data fork plus that of the resource fork, in bytes; 0 when there is no such file.
std::uint64_t TotalForkLength(const std::string& path);

// Type and creator codes from the first source of Finder information; both 0 when there is none.
struct FinderInfo {
  std::uint32_t type = 0;
  std::uint32_t creator = 0;
};
FinderInfo ReadFinderInfo(const std::string& path);

// While one of these lives on a thread, that thread's look-ups of files, forks and Finder information are
// made once a path and remembered, and the file opened last stays open: one look-up then serves a whole
// request. They may nest; the outermost one forgets.
class ForkLookupScope {
 public:
  ForkLookupScope();
  ~ForkLookupScope();
  ForkLookupScope(const ForkLookupScope&) = delete;
  ForkLookupScope& operator=(const ForkLookupScope&) = delete;
};

}  // namespace quillmark

#endif
