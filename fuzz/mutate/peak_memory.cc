#include "peak_memory.h"

#include <malloc.h>

#include <algorithm>
#include <fstream>
#include <string>

namespace quillmark {
namespace {

// A line of /proc/self/status, as in "VmHWM:     1234 kB".
std::size_t StatusBytes(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::size_t kilobytes = 0;
    if (word == key && status >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

}  // namespace

PeakMemory::PeakMemory() {
  constexpr int kLargeBlock = 128 * 1024;
  ::mallopt(M_MMAP_THRESHOLD, kLargeBlock);
  ::mallopt(M_TRIM_THRESHOLD, kLargeBlock);
}

void PeakMemory::Restart() {
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak becomes what is held
  start_ = StatusBytes("VmRSS:");
}

std::size_t PeakMemory::Growth() const { return std::max(StatusBytes("VmHWM:"), start_) - start_; }

}  // namespace quillmark
