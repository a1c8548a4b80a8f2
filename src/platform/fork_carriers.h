// Where a file system keeps what belongs to one file besides its data fork: looks for the carriers of its
// resource fork and Finder information, asking the kernel as little as it can, since a folder of 100,000
// ordinary files has none. Holds names and ranges, no open files. Tests: tests/platform/forks_test.cc.
#ifndef QUILLMARK_PLATFORM_FORK_CARRIERS_H_
#define QUILLMARK_PLATFORM_FORK_CARRIERS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_status.h"
#include "platform/forks.h"

namespace quillmark {

class ForkCarriers {
 public:
  // The place of a resource fork: as in ResourceForkLocation, with the fork's range in the carrying file.
  struct Place {
    ForkCarrier carrier;
    std::string where;
    std::uint64_t start = 0;
    std::uint64_t length = 0;
  };

  explicit ForkCarriers(std::string path) : path_(std::move(path)) {}

  // Each is looked for once; later calls repeat the answer.
  const FileStatus& Status();
  const std::optional<Place>& ResourceFork();
  const FinderInfo& Finder();

 private:
  const std::vector<std::string>& Attributes();
  const std::vector<std::string>& Sidecars();
  bool HasAttribute(const std::string& name);
  std::optional<Place> LookForResourceFork();
  FinderInfo LookForFinderInfo();

  std::string path_;
  std::optional<FileStatus> status_;
  std::optional<std::vector<std::string>> attributes_;
  std::optional<std::vector<std::string>> sidecars_;  // those that exist, in the order they are searched
  std::optional<std::optional<Place>> resource_fork_;
  std::optional<FinderInfo> finder_;
};

// Forgets what this thread's ForkLookupScope remembers, after a carrier was written.
void ForgetForkLookups();

}  // namespace quillmark

#endif
