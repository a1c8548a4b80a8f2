#include "collect.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <thread>

namespace quillmark::tool {
namespace {

constexpr std::uint32_t kEveryAttribute = QM_ATTRIBUTES_ALL;
constexpr std::size_t kFilesAheadPerThread = 64;

IdentifiedFile Identify(const FontPath& source) {
  IdentifiedFile file{source, nullptr, {}};
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifier(source.path.c_str(), 0, kEveryAttribute, &array) == 0) {
    file.array.reset(array);
    file.faces = FacesOf(array, source.path);
  }
  return file;
}

// Results that are ready but not yet due, with room for a bounded number of them.
class Queue {
 public:
  Queue(const std::vector<FontPath>& paths, std::size_t ahead) : paths_(paths), ahead_(ahead) {}

  void Work() {
    for (;;) {
      std::size_t mine = 0;
      {
        std::unique_lock lock(mutex_);
        room_.wait(lock, [&] { return next_ == paths_.size() || next_ < due_ + ahead_ || failed_; });
        if (next_ == paths_.size() || failed_) return;
        mine = next_++;
      }
      try {
        IdentifiedFile file = Identify(paths_[mine]);
        const std::lock_guard lock(mutex_);
        ready_.emplace(mine, std::move(file));
      } catch (...) {
        const std::lock_guard lock(mutex_);
        failed_ = std::current_exception();
      }
      ready_changed_.notify_one();
      room_.notify_all();
    }
  }

  IdentifiedFile Next() {
    std::unique_lock lock(mutex_);
    ready_changed_.wait(lock, [&] { return failed_ || ready_.contains(due_); });
    if (failed_) std::rethrow_exception(failed_);
    IdentifiedFile file = std::move(ready_.extract(due_).mapped());
    ++due_;
    room_.notify_all();
    return file;
  }

  void Abandon() {
    const std::lock_guard lock(mutex_);
    next_ = paths_.size();
    room_.notify_all();
  }

 private:
  const std::vector<FontPath>& paths_;
  const std::size_t ahead_;
  std::mutex mutex_;
  std::condition_variable room_, ready_changed_;
  std::size_t next_ = 0, due_ = 0;
  std::map<std::size_t, IdentifiedFile> ready_;
  std::exception_ptr failed_;
};

// Joins the workers however the consumer leaves.
class Workers {
 public:
  Workers(Queue& queue, unsigned threads) : queue_(queue) {
    for (unsigned i = 0; i < threads; ++i) threads_.emplace_back([&queue] { queue.Work(); });
  }
  ~Workers() {
    queue_.Abandon();
    for (std::thread& thread : threads_) thread.join();
  }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

 private:
  Queue& queue_;
  std::vector<std::thread> threads_;
};

}  // namespace

void IdentifyAll(const std::vector<FontPath>& paths, unsigned threads,
                 const std::function<void(IdentifiedFile)>& consume) {
  if (threads <= 1 || paths.size() <= 1) {
    for (const FontPath& path : paths) consume(Identify(path));
    return;
  }
  Queue queue(paths, kFilesAheadPerThread * threads);
  const Workers workers(queue, static_cast<unsigned>(std::min<std::size_t>(threads, paths.size())));
  for (std::size_t i = 0; i < paths.size(); ++i) consume(queue.Next());
}

}  // namespace quillmark::tool
