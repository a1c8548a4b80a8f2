#include "files/collect.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <shared_mutex>
#include <thread>
#include <utility>

#include "api/creation.h"
#include "faces/attributes.h"
#include "files/standard_input.h"
#include "reasons/fork_places.h"
#include "reasons/opened_font.h"
#include "reasons/printer_fonts.h"
#include "reasons/reason.h"
#include "reasons/watched_files.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kFilesAheadPerThread = 64;

IdentifiedFile WithoutFaces(FontPath source, Explanation explanation) {
  return {std::move(source), nullptr, {}, std::move(explanation)};
}

IdentifiedFile WithTooLittleMemory(const FontPath& source, unsigned threads) {
  const char* const advice = threads > 1 ? " (-j 1 takes the least)" : "";
  return WithoutFaces(source,
                      {Outcome::kUnreadable, std::string("there is too little memory for it") + advice, {}});
}

// Identifies files, on any number of threads.
class Identifier {
 public:
  Identifier(unsigned threads, const FaceNeeds& needs) : threads_(threads), needs_(needs) {}

  IdentifiedFile Identify(const FontPath& source) {
    if (!source.fault.empty()) return WithoutFaces(source, {Outcome::kUnreadable, source.fault, {}});
    try {
      const std::shared_lock among_others(tries_);
      IdentifiedFile file = Try(source);
      if (!file.explanation.may_pass) return file;
    } catch (const std::bad_alloc&) {
    }
    // Other threads may have held the memory or files that were missing: tries again while none works.
    try {
      const std::lock_guard alone(tries_);
      return Try(source);
    } catch (const std::bad_alloc&) {
      return WithTooLittleMemory(source, threads_);
    }
  }

 private:
  IdentifiedFile Try(const FontPath& source) {
    std::optional<StandardInputFile> input;
    if (source.standard_input_name) {
      input.emplace(*source.standard_input_name);
      if (!input->fault().empty()) return WithoutFaces(source, {Outcome::kUnreadable, input->fault()});
    }
    const std::string& path = input ? input->path() : source.path;
    const WatchedFiles files;
    CreationResult result;
    Explanation explanation;
    if (source.is_sidecar) {
      explanation = ExplainSidecar(files, path);
    } else {
      result = CreateFaces(files, path, needs_.attributes);
      if (!files.failure()) explanation = Explain(path, result, families_);
    }
    if (files.failure()) {
      const bool may_pass = IsShortage(files.failure()->error);
      explanation = {Outcome::kUnreadable, files.WhyUnread(path), {}, may_pass};
      return WithoutFaces(source, explanation);
    }
    IdentifiedFile file = WithoutFaces(source, std::move(explanation));
    if (result.faces.size() == 0) return file;
    file.array.reset(new QM_FontArray(std::move(result.faces)));
    file.faces = FacesOf(file.array.get(), source.path, needs_);
    return file;
  }

  static Explanation ExplainSidecar(const WatchedFiles& files, const std::string& path) {
    OpenedFont opened(path, files);
    try {
      return ExplainLoneSidecar(opened.file);
    } catch (const BudgetSpent&) {
      return {Outcome::kDamaged, kTakesTooMuchWork};
    }
  }

  PrinterFontFamilies families_;
  const unsigned threads_;
  const FaceNeeds needs_;
  std::shared_mutex tries_;  // shared by files under way; held alone for a second try
};

// Results that wait for their turn, a bounded number of them.
class Queue {
 public:
  Queue(FontPaths& paths, Identifier& identifier, std::size_t ahead)
      : paths_(paths), identifier_(identifier), ready_(ahead) {}

  // `start_another` is called while there may be a path for one worker more.
  void Work(const std::function<void()>& start_another) {
    try {
      while (TakeRoom()) {
        auto path = NextPath(start_another);
        if (!path) return GiveRoomBack();
        Deliver(path->first, identifier_.Identify(path->second));
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      failed_ = std::current_exception();
      ready_changed_.notify_one();
      room_.notify_all();
    }
  }

  // The next result in the order of the paths; nothing after the last.
  std::optional<IdentifiedFile> Next() {
    std::unique_lock lock(mutex_);
    ready_changed_.wait(lock, [&] { return failed_ || Slot(next_out_) || (ended_ && next_out_ == taken_); });
    if (failed_) std::rethrow_exception(failed_);
    std::optional<IdentifiedFile> file = std::exchange(Slot(next_out_), std::nullopt);
    if (file) ++next_out_;
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
  // Waits for room among the results. False when there are no more paths.
  bool TakeRoom() {
    std::unique_lock lock(mutex_);
    room_.wait(lock, [&] { return ended_ || failed_ || taken_ < next_out_ + ready_.size(); });
    if (ended_ || failed_) return false;
    ++taken_;
    return true;
  }

  void GiveRoomBack() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    --taken_;
    ready_changed_.notify_one();
    room_.notify_all();
  }

  // The next path and its place in the order. Waiting for one may take long, as a list may come through a
  // pipe: results are handed over meanwhile.
  std::optional<std::pair<std::size_t, FontPath>> NextPath(const std::function<void()>& start_another) {
    const std::lock_guard lock(paths_mutex_);
    std::optional<FontPath> path = paths_.Next();
    if (!path) return std::nullopt;
    if (paths_.MayHaveNext()) start_another();
    return std::pair(next_++, std::move(*path));
  }

  void Deliver(std::size_t place, IdentifiedFile file) {
    const std::lock_guard lock(mutex_);
    Slot(place) = std::move(file);
    ready_changed_.notify_one();
  }

  std::optional<IdentifiedFile>& Slot(std::size_t place) { return ready_[place % ready_.size()]; }

  std::mutex paths_mutex_;
  FontPaths& paths_;
  Identifier& identifier_;
  std::size_t next_ = 0;

  std::mutex mutex_;
  std::condition_variable room_, ready_changed_;
  std::size_t taken_ = 0, next_out_ = 0;  // by workers; the next to hand over
  bool ended_ = false;
  std::vector<std::optional<IdentifiedFile>> ready_;  // a ring by place: a delivery takes no memory
  std::exception_ptr failed_;
};

// Joins the workers also when the consumer throws.
class Workers {
 public:
  Workers(Queue& queue, unsigned threads) : queue_(queue), most_(threads) {
    threads_.reserve(threads);
    Start();
  }
  ~Workers() {
    queue_.Abandon();
    {
      const std::lock_guard lock(mutex_);
      most_ = 0;
    }
    for (std::thread& thread : threads_) thread.join();
  }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  bool empty() const {
    const std::lock_guard lock(mutex_);
    return threads_.empty();
  }

 private:
  // Each worker starts the next one, so that few files take few threads, whose stacks are memory, too. Limits
  // on threads and on memory keep some or all of them from starting.
  void Start() {
    const std::lock_guard lock(mutex_);
    if (threads_.size() >= most_) return;
    try {
      threads_.emplace_back([this] { queue_.Work([this] { Start(); }); });
    } catch (const std::exception&) {
      most_ = 0;
    }
  }

  Queue& queue_;
  mutable std::mutex mutex_;
  std::size_t most_;
  std::vector<std::thread> threads_;
};

using Consumer = std::function<void(IdentifiedFile)>;

void HandOver(IdentifiedFile file, unsigned threads, const Consumer& consume) {
  FontPath source = file.source;
  try {
    return consume(std::move(file));
  } catch (const std::bad_alloc&) {
  }
  consume(WithTooLittleMemory(source, threads));
}

}  // namespace

void IdentifyAll(FontPaths& paths, unsigned threads, const FaceNeeds& needs, const Consumer& consume) {
  Identifier identifier(threads, needs);
  const auto one_by_one = [&] {
    while (const auto path = paths.Next()) HandOver(identifier.Identify(*path), threads, consume);
  };
  if (threads <= 1) return one_by_one();
  Queue queue(paths, identifier, kFilesAheadPerThread * threads);
  const Workers workers(queue, threads);
  if (workers.empty()) return one_by_one();
  while (auto file = queue.Next()) HandOver(std::move(*file), threads, consume);
}

}  // namespace quillmark::tool
