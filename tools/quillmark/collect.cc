#include "collect.h"

#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "platform/forks.h"
#include "reason.h"
#include "standard_input.h"

namespace quillmark::tool {
namespace {

constexpr std::uint32_t kEveryAttribute = QM_ATTRIBUTES_ALL;
constexpr std::size_t kFilesAheadPerThread = 64;

IdentifiedFile Identify(FontPath source) {
  IdentifiedFile file{std::move(source), nullptr, {}, {}};
  if (!file.source.fault.empty()) {
    file.explanation = {Outcome::kUnreadable, file.source.fault};
    return file;
  }
  std::optional<StandardInputFile> input;
  if (file.source.standard_input_name) {
    input.emplace(*file.source.standard_input_name);
    if (!input->fault().empty()) {
      file.explanation = {Outcome::kUnreadable, input->fault()};
      return file;
    }
  }
  const std::string& path = input ? input->path() : file.source.path;
  const ForkLookupScope look_ups;  // shared by what reads the file and what explains it
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifier(path.c_str(), 0, kEveryAttribute, &array) == 0) {
    file.array.reset(array);
    file.faces = FacesOf(array, file.source.path);
  }
  file.explanation = Explain(path, file.faces);
  return file;
}

// Results that are ready but not yet due, with room for a bounded number of them.
class Queue {
 public:
  Queue(FontPaths& paths, std::size_t ahead) : paths_(paths), ahead_(ahead) {}

  void Work() {
    try {
      while (TakeRoom()) {
        auto path = NextPath();
        if (!path) return GiveRoomBack();
        Deliver(path->first, Identify(std::move(path->second)));
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      failed_ = std::current_exception();
      ready_changed_.notify_one();
      room_.notify_all();
    }
  }

  // The result that is due, or nothing after the last.
  std::optional<IdentifiedFile> Next() {
    std::unique_lock lock(mutex_);
    ready_changed_.wait(lock,
                        [&] { return failed_ || ready_.contains(due_) || (ended_ && due_ == places_); });
    if (failed_) std::rethrow_exception(failed_);
    if (!ready_.contains(due_)) return std::nullopt;
    IdentifiedFile file = std::move(ready_.extract(due_).mapped());
    ++due_;
    room_.notify_all();
    return file;
  }

  void Abandon() {
    paths_.Stop();
    const std::lock_guard lock(mutex_);
    ended_ = true;
    room_.notify_all();
  }

 private:
  // Waits for a place among the results. False when no more paths come.
  bool TakeRoom() {
    std::unique_lock lock(mutex_);
    room_.wait(lock, [&] { return ended_ || failed_ || places_ < due_ + ahead_; });
    if (ended_ || failed_) return false;
    ++places_;
    return true;
  }

  void GiveRoomBack() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    --places_;
    ready_changed_.notify_one();
    room_.notify_all();
  }

  // A path and its place in the order. Finding one may take long, as a list may come through a pipe: results
  // are handed over meanwhile.
  std::optional<std::pair<std::size_t, FontPath>> NextPath() {
    const std::lock_guard lock(paths_mutex_);
    std::optional<FontPath> path = paths_.Next();
    if (!path) return std::nullopt;
    return std::pair(next_++, std::move(*path));
  }

  void Deliver(std::size_t place, IdentifiedFile file) {
    const std::lock_guard lock(mutex_);
    ready_.emplace(place, std::move(file));
    ready_changed_.notify_one();
  }

  std::mutex paths_mutex_;
  FontPaths& paths_;
  std::size_t next_ = 0;

  std::mutex mutex_;
  const std::size_t ahead_;
  std::condition_variable room_, ready_changed_;
  std::size_t places_ = 0, due_ = 0;  // taken by workers, to be handed over next
  bool ended_ = false;
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

void IdentifyAll(FontPaths& paths, unsigned threads, const std::function<void(IdentifiedFile)>& consume) {
  if (threads <= 1) {
    while (auto path = paths.Next()) consume(Identify(std::move(*path)));
    return;
  }
  Queue queue(paths, kFilesAheadPerThread * threads);
  const Workers workers(queue, threads);
  while (auto file = queue.Next()) consume(std::move(*file));
}

}  // namespace quillmark::tool
