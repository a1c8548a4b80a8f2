// Runs mutations of every kind of input through the library, each kind in a process of its own that is
// watched:
//   mutate [--seed N] [--count N] [--first N] [--kind KIND] [--keep FOLDER] [--figures]
// A crash, a sanitizer's report, a leak, a broken promise and a hang are findings, told with the command that
// repeats them; then the status is 1. With --figures it also measures what the slowest and the largest took.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <thread>

#include "builders/temp_folder.h"
#include "examination.h"
#include "inputs.h"
#include "peak_memory.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr auto kLongest = std::chrono::seconds(30);  // for one input, far above what any needs
constexpr int kMostFindings = 20;

struct Options {
  std::uint64_t seed = 1;
  std::uint64_t first = 0;
  std::uint64_t count = 3000;
  std::string kind;
  std::string folder;
  bool figures = false;
};

struct Extreme {
  double value = 0;
  std::uint64_t number = 0;  // of the mutation that reached it

  void Raise(double reached, std::uint64_t by) {
    if (reached <= value) return;
    value = reached;
    number = by;
  }
};

// What the process that works tells the one that watches.
struct Progress {
  std::atomic<std::uint64_t> number;  // of the mutation at work
  std::uint64_t examined = 0;
  std::uint64_t read = 0;
  Extreme first_call;  // seconds
  Extreme all_calls;   // seconds
  Extreme memory;      // bytes
};

Sample MutationOf(const InputKind& kind, std::uint64_t seed, std::uint64_t number) {
  std::uint64_t mixed = seed;
  for (const char letter : kind.name) mixed = mixed * 31 + static_cast<unsigned char>(letter);
  Dice dice(mixed * 0x9E3779B97F4A7C15 + number);
  return Mutated(kind, dice);
}

// Loads what is loaded once a process, and makes sure that every sound input is read: else its mutations
// would prove nothing. A printer font by itself holds no face.
void WarmUp(const InputKind& kind, const std::string& folder) {
  char buffer[64];
  char* styles[] = {buffer};
  std::uint32_t count = 0;
  QM_GetStyles("Foo Bold", "", 1, sizeof(buffer), &count, styles);
  QM_GetClassificationFromFamily("Garamond", nullptr, buffer, sizeof(buffer));
  // Those tables are the shipped ones; tables that are mutated come from the folder.
  ::setenv("QUILLMARK_BUNDLE", folder.c_str(), 1);
  for (const Input& input : kind.inputs) {
    if (!WriteSample(folder, input.sample)) continue;
    if (kind.examine(folder, input.sample).is_read || kind.name == "post") continue;
    std::fprintf(stderr, "a sound input of kind %s is not read\n", kind.name.c_str());
    std::abort();
  }
}

void Work(const InputKind& kind, const Options& options, std::uint64_t first, Progress& progress) {
  WarmUp(kind, options.folder);
  std::optional<PeakMemory> memory;
  if (options.figures) memory.emplace();
  for (std::uint64_t number = first; number < options.first + options.count; ++number) {
    progress.number = number;
    const Sample sample = MutationOf(kind, options.seed, number);
    if (!WriteSample(options.folder, sample)) continue;  // more than an extended attribute holds
    if (memory) memory->Restart();
    Examined examined = kind.examine(options.folder, sample);
    if (memory) progress.memory.Raise(static_cast<double>(memory->Growth()), number);
    // What else runs on the machine takes its toll: the least of several runs counts.
    for (int again = 0;
         options.figures && again < 4 &&
         (examined.first_call > progress.first_call.value || examined.all_calls > progress.all_calls.value);
         ++again) {
      const Examined repeated = kind.examine(options.folder, sample);
      examined.first_call = std::min(examined.first_call, repeated.first_call);
      examined.all_calls = std::min(examined.all_calls, repeated.all_calls);
    }
    progress.first_call.Raise(examined.first_call, number);
    progress.all_calls.Raise(examined.all_calls, number);
    ++progress.examined;
    progress.read += examined.is_read;
  }
}

// Starts a process that works on the mutations from `first` on, and waits for its end. What stands against
// it, if anything does.
std::optional<std::string> WatchedWork(const InputKind& kind, const Options& options, std::uint64_t first,
                                       Progress& progress) {
  progress.number = first;
  std::fflush(nullptr);
  const pid_t worker = ::fork();
  if (worker < 0) return "no process for the work";
  if (worker == 0) {
    // The messages of damaged tables.
    if (::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO) < 0) std::_Exit(1);
    Work(kind, options, first, progress);
    std::exit(0);  // looks for leaks
  }
  std::uint64_t last_number = first;
  auto last_step = std::chrono::steady_clock::now();
  int status = 0;
  while (::waitpid(worker, &status, WNOHANG) == 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const auto now = std::chrono::steady_clock::now();
    if (progress.number != last_number) {
      last_number = progress.number;
      last_step = now;
    } else if (now - last_step > kLongest) {
      ::kill(worker, SIGKILL);
      ::waitpid(worker, &status, 0);
      return "it hangs";
    }
  }
  if (WIFSIGNALED(status)) return "it ends by signal " + std::to_string(WTERMSIG(status));
  if (WEXITSTATUS(status) != 0) return "it ends with status " + std::to_string(WEXITSTATUS(status));
  return std::nullopt;
}

int Findings(const InputKind& kind, const Options& options, Progress& progress) {
  int findings = 0;
  for (std::uint64_t first = options.first; findings < kMostFindings; first = progress.number + 1) {
    const auto fault = WatchedWork(kind, options, first, progress);
    if (!fault) break;
    ++findings;
    std::printf(
        "%s: mutation %llu of seed %llu: %s\n  ./script/mutate --seed %llu --kind %s --first %llu --count "
        "1\n",
        kind.name.c_str(), static_cast<unsigned long long>(progress.number),
        static_cast<unsigned long long>(options.seed), fault->c_str(),
        static_cast<unsigned long long>(options.seed), kind.name.c_str(),
        static_cast<unsigned long long>(progress.number));
    if (progress.number + 1 >= options.first + options.count) break;
  }
  return findings;
}

void PrintRow(const InputKind& kind, const Options& options, const Progress& progress) {
  std::printf("%-16s %7llu %7llu", kind.name.c_str(), static_cast<unsigned long long>(progress.examined),
              static_cast<unsigned long long>(progress.read));
  if (options.figures) {
    const auto print = [](const Extreme& extreme, double unit) {
      std::printf("  %8.2f (%6llu)", extreme.value / unit, static_cast<unsigned long long>(extreme.number));
    };
    print(progress.first_call, 1e-3);
    print(progress.all_calls, 1e-3);
    print(progress.memory, 1024 * 1024);
  }
  std::printf("%s\n", progress.examined == 0 ? "  the file system keeps no extended attributes" : "");
  std::fflush(stdout);
}

int Run(Options options) {
  const TempFolder scratch;
  if (options.folder.empty()) options.folder = scratch.path();
  std::filesystem::create_directories(options.folder + "/Resources");
  const auto kinds = AllKinds();
  void* const shared =
      ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) return 2;
  std::printf("%-16s %7s %7s%s\n", "kind", "inputs", "read",
              options.figures ? "  ms to read (number)  ms in all (number)  MiB held (number)" : "");
  int findings = 0;
  bool is_known = false;
  for (const InputKind& kind : kinds) {
    if (!options.kind.empty() && options.kind != kind.name) continue;
    is_known = true;
    auto* const progress = new (shared) Progress;
    findings += Findings(kind, options, *progress);
    PrintRow(kind, options, *progress);
  }
  if (!is_known) {
    std::fprintf(stderr, "mutate: no kind %s\n", options.kind.c_str());
    return 2;
  }
  return findings == 0 ? 0 : 1;
}

}  // namespace
}  // namespace quillmark

int main(int argc, char** argv) {
  quillmark::Options options;
  CLI::App app("Runs damaged inputs of every kind through the library.");
  app.add_option("--seed", options.seed, "of the damage");
  app.add_option("--first", options.first, "number of the first mutation");
  app.add_option("--count", options.count, "mutations of each kind");
  app.add_option("--kind", options.kind, "this kind of input alone");
  app.add_option("--keep", options.folder,
                 "write the inputs into this folder; the last of each kind stays there");
  app.add_flag("--figures", options.figures, "measure time and memory");
  CLI11_PARSE(app, argc, argv);
  return quillmark::Run(options);
}
