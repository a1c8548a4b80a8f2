// FontFile: one Macintosh file with its two forks and its Finder information, looked up and opened once. The
// data fork is the file itself. The resource fork is the first of these that holds at least one byte:
//   NAME/..namedfork/rsrc, NAME/rsrc; the extended attributes user.com.apple.ResourceFork and
//   user.org.netatalk.ResourceFork; entry 2 of an AppleDouble sidecar (._NAME, the __MACOSX tree of each
//   ancestor folder, nearest first, .AppleDouble/NAME); the raw fork resource.frk/NAME.
// The file system is asked as rarely as possible, since most folders of fonts hold none of these. Only
// regular files are opened. Paths are bytes as the file system takes them. Tests:
// tests/platform/forks_test.cc; fuzz/apple_double_fuzzer.cc.
#ifndef QUILLMARK_PLATFORM_FILES_FONT_FILE_H_
#define QUILLMARK_PLATFORM_FILES_FONT_FILE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/file_system.h"
#include "platform/files/forks.h"

namespace quillmark {

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

// Type and creator codes; both 0 when there are none.
struct FinderInfo {
  std::uint32_t type = 0;
  std::uint32_t creator = 0;
};

// CRC-32 of both forks; 0 for a fork that is empty or cannot be opened, and bytes that cannot be read are
// zero.
struct ForkSums {
  std::uint32_t data_fork = 0;
  std::uint32_t both_forks = 0;  // the data fork followed by the resource fork
  bool has_resource_fork = false;
};

class FontFile {
 public:
  // `access` outlives the object.
  FontFile(FileAccess& access, std::string path) : access_(access), path_(std::move(path)) {}
  FontFile(const FontFile&) = delete;
  FontFile& operator=(const FontFile&) = delete;

  const std::string& path() const { return path_; }
  Budget* budget() const { return access_.budget(); }  // null without a bound
  // Each is looked up at the first call and cached.
  const FileStatus& Status();
  const std::optional<RegularFile>& Data();  // nothing when there is no regular file or it cannot be opened
  std::optional<Fork> DataFork();
  const std::optional<ResourceForkLocation>& ResourceFork();
  const FinderInfo& Finder();  // from the first carrier that has any
  const ForkSums& Sums();
  // Length of the data fork plus that of the resource fork, in bytes; 0 when there is no such file.
  std::uint64_t TotalLength();

 private:
  const std::vector<std::string>& Sidecars();
  std::optional<std::string> Attribute(const std::string& name);
  std::optional<ResourceForkLocation> FindResourceFork();
  FinderInfo FindFinderInfo();
  std::optional<Fork> OpenFork(const std::string& path);

  FileAccess& access_;
  const std::string path_;
  std::optional<FileStatus> status_;
  std::optional<std::optional<RegularFile>> data_;
  std::optional<std::vector<std::string>> attributes_;
  std::optional<std::vector<std::string>> sidecars_;  // existing ones, in the order they are searched
  std::optional<std::optional<ResourceForkLocation>> resource_fork_;
  std::uint64_t resource_fork_length_ = 0;
  std::optional<FinderInfo> finder_;
  std::optional<ForkSums> sums_;
};

// Whether a regular file is there, in the machine's file system.
bool IsRegularFile(const std::string& path);

}  // namespace quillmark

#endif
