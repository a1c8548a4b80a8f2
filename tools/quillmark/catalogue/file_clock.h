// FileClock: the clock by which a file system stamps its files. That of a server may differ from this
// machine's.
#ifndef QUILLMARK_TOOL_CATALOGUE_FILE_CLOCK_H_
#define QUILLMARK_TOOL_CATALOGUE_FILE_CLOCK_H_

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace quillmark::tool {

// Whether a path is in a file system that is known to be this machine's own.
bool IsOnThisMachine(const std::string& path);

class FileClock {
 public:
  // Learns the clock of the file system that `own_file` is on by touching that file. Empty: only this
  // machine's clock is known, which counts for all other file systems.
  explicit FileClock(const std::string& own_file);

  // Nanoseconds since 1970.
  std::int64_t Now(dev_t device) const;

 private:
  dev_t device_ = 0;
  std::int64_t ahead_ = 0;  // nanoseconds, of this machine's clock
};

}  // namespace quillmark::tool

#endif
