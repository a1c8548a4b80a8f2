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
#include "files/fork_carriers.h"
#include "files/standard_input.h"
#include "reasons/fork_places.h"
#include "reasons/opened_font.h"
#include "reasons/reason.h"
#include "reasons/watched_files.h"

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
  Identifier(unsigned threads, const FaceNeeds& needs, SharedReading& shared)
      : threads_(threads), needs_(needs), shared_(shared) {}

  IdentifiedFile Identify(const FontPath& source) {
    if (!source.fault.empty()) return WithoutFaces(source, {Outcome::kUnreadable, source.fault});
    try {
      std::optional<StandardInputFile> input;  // holds what can be read only once
      if (source.standard_input_name) input.emplace(*source.standard_input_name);
      if (input && !input->fault().empty()) {
        return WithoutFaces(source, {Outcome::kUnreadable, input->fault()});
      }
      return TryTwice(source, input ? input->path() : source.path);
    } catch (const std::bad_alloc&) {
      return WithTooLittleMemory(source, threads_);
    }
  }

 private:
  IdentifiedFile TryTwice(const FontPath& source, const std::string& path) {
    try {
      const std::shared_lock among_others(tries_);
      IdentifiedFile file = Try(source, path);
      if (!file.explanation.may_pass) return file;
    } catch (const std::bad_alloc&) {
    }
    // Other threads may have held the memory or files that were missing: tries again while none works.
    const std::lock_guard alone(tries_);
    return Try(source, path);
  }

  IdentifiedFile Try(const FontPath& source, const std::string& path) {
    const WatchedFiles files(*shared_.system);
    CreationResult result;
    Explanation explanation;
    if (source.is_sidecar) {
      explanation = ExplainSidecar(files, path);
    } else {
      std::optional<FilesWithKnownForks> with_known_forks;
      if (source.carriers) with_known_forks.emplace(files, path, *source.carriers);
      const FileSystem& system = with_known_forks ? static_cast<const FileSystem&>(*with_known_forks) : files;
      const auto wrapped = shared_.wrap ? shared_.wrap(source, system) : nullptr;
      result = CreateFaces(wrapped ? *wrapped : system, path, needs_.attributes);
    }
    if (files.failure()) {
      const bool may_pass = IsShortage(files.failure()->error);
      return WithoutFaces(source, {Outcome::kUnreadable, files.WhyUnread(path), {}, may_pass});
    }
    // Looks at neighbours, too: one that cannot be read takes no face from this file.
    if (!source.is_sidecar) explanation = Explain(files, path, result, shared_.families);
    IdentifiedFile file = WithoutFaces(source, std::move(explanation));
    if (result.faces.size() == 0) return file;
    file.array.reset(new QM_FontArray(std::move(result.faces)));
    file.faces = FacesOf(file.array.get(), source.path, needs_);
    if (shared_.then) shared_.then(file);
    return file;
  }

  static Explanation ExplainSidecar(const WatchedFiles& files, const std::string& path) {
    OpenedFont opened(path, files);
    try {
      return ExplainLoneSidecar(opened);
    } catch (const BudgetSpent&) {
      return {Outcome::kDamaged, TooMuchWork(opened.budget.most_work())};
    }
  }

  const unsigned threads_;
  const FaceNeeds needs_;
  SharedReading& shared_;
  std::shared_mutex tries_;  // shared by files under way; held alone for a second try
};

using Consumer = std::function<void(IdentifiedFile&)>;

// The work of one run. Each thread takes a path, identifies the file, and hands over what waits in the order
// of the paths unless another one does so already: a thread that only hands over would interrupt the others.
class Run {
 public:
  Run(PathSource& paths, unsigned threads, const FaceNeeds& needs, const Consumer& consume,
      SharedReading& shared)
      : paths_(paths),
        threads_(threads),
        identifier_(threads, needs, shared),
        consume_(consume),
        waiting_(kFilesAheadPerThread * threads) {}

  // `start_another` is called while there may be a path for one thread more.
  void Work(const std::function<void()>& start_another) {
    try {
      while (TakeRoom()) {
        auto path = NextPath(start_another);
        if (!path) return End(nullptr);
        Deliver(path->first, identifier_.Identify(path->second));
      }
    } catch (...) {
      End(std::current_exception());
      paths_.Stop();
    }
  }

  // To be called when no thread works any more.
  void RethrowFailure() const {
    if (failed_) std::rethrow_exception(failed_);
  }

 private:
  // Waits for room among the results. False when there are no more paths.
  bool TakeRoom() {
    std::unique_lock lock(mutex_);
    room_.wait(lock, [&] { return ended_ || taken_ < next_out_ + waiting_.size(); });
    if (!ended_) ++taken_;
    return !ended_;
  }

  void End(const std::exception_ptr& failure) {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    if (!failed_) failed_ = failure;
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
    std::unique_lock lock(mutex_);
    Slot(place) = std::move(file);
    if (is_handing_over_) return;
    is_handing_over_ = true;  // stays so when handing over fails
    while (Slot(next_out_)) {
      IdentifiedFile next = *std::exchange(Slot(next_out_), std::nullopt);
      lock.unlock();
      HandOver(next);
      lock.lock();
      ++next_out_;
      room_.notify_one();
    }
    is_handing_over_ = false;
  }

  void HandOver(IdentifiedFile& file) {
    try {
      return consume_(file);
    } catch (const std::bad_alloc&) {
    }
    IdentifiedFile without = WithTooLittleMemory(file.source, threads_);
    consume_(without);
  }

  std::optional<IdentifiedFile>& Slot(std::size_t place) { return waiting_[place % waiting_.size()]; }

  std::mutex paths_mutex_;
  PathSource& paths_;
  std::size_t next_ = 0;

  const unsigned threads_;
  Identifier identifier_;
  const Consumer& consume_;

  std::mutex mutex_;
  std::condition_variable room_;
  std::size_t taken_ = 0, next_out_ = 0;  // by threads; the next to hand over
  bool ended_ = false;
  bool is_handing_over_ = false;
  std::vector<std::optional<IdentifiedFile>> waiting_;  // a ring by place: a delivery takes no memory
  std::exception_ptr failed_;
};

// Threads beside the calling one, joined at the end.
class OtherThreads {
 public:
  OtherThreads(Run& run, unsigned most) : run_(run), most_(most) { threads_.reserve(most); }
  ~OtherThreads() {
    const std::lock_guard lock(mutex_);
    most_ = 0;
  }
  OtherThreads(const OtherThreads&) = delete;
  OtherThreads& operator=(const OtherThreads&) = delete;

  // Each thread starts the next one, so that few files take few threads, whose stacks are memory, too. Limits
  // on threads and on memory keep some or all of them from starting.
  void Start() {
    const std::lock_guard lock(mutex_);
    if (threads_.size() >= most_) return;
    try {
      threads_.emplace_back([this] { run_.Work([this] { Start(); }); });
    } catch (const std::exception&) {
      most_ = 0;
    }
  }

 private:
  Run& run_;
  std::mutex mutex_;
  std::size_t most_;
  std::vector<std::jthread> threads_;  // the last member: the others outlive its threads
};

}  // namespace

void IdentifyAll(PathSource& paths, unsigned threads, const FaceNeeds& needs, const Consumer& consume,
                 SharedReading& shared) {
  Run run(paths, threads, needs, consume, shared);
  {
    OtherThreads others(run, threads - 1);
    run.Work([&] { others.Start(); });
  }
  run.RethrowFailure();
}

}  // namespace quillmark::tool
