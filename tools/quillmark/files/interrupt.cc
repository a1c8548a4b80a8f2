#include "files/interrupt.h"

#include <signal.h>

#include <atomic>

namespace quillmark::tool {
namespace {

std::atomic<int> noted_signal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may not wait");

void Note(int number) { noted_signal = number; }

}  // namespace

void NoteInterrupts() {
  for (const int number : {SIGINT, SIGTERM}) {
    struct sigaction action {};
    if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action.sa_handler = Note;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    ::sigaction(number, &action, nullptr);
  }
}

int Interrupted() { return noted_signal; }

int InterruptedStatus() { return 128 + Interrupted(); }

}  // namespace quillmark::tool
