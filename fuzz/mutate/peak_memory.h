// The most memory that the process held at once, as the kernel counts it.
#ifndef QUILLMARK_FUZZ_MUTATE_PEAK_MEMORY_H_
#define QUILLMARK_FUZZ_MUTATE_PEAK_MEMORY_H_

#include <cstddef>

namespace quillmark {

class PeakMemory {
 public:
  // What is free goes back to the kernel from here on, as far as it can, so that it does not hide later
  // growth.
  PeakMemory();
  // Growth() counts from what is held at this moment.
  void Restart();
  std::size_t Growth() const;  // bytes; 0 where the kernel does not tell

 private:
  std::size_t start_ = 0;
};

}  // namespace quillmark

#endif
