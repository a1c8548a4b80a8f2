#include "catalogue/spooled_output.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <iostream>

namespace quillmark::tool {
namespace {

// A pipe that is ready takes so much without waiting.
constexpr std::size_t kPipePart = PIPE_BUF;
// In all: less than updates wait for readers.
constexpr int kReaderPatienceMilliseconds = 1000;

}  // namespace

SpooledOutput::SpooledOutput() : patience_milliseconds_(kReaderPatienceMilliseconds) {
  struct stat found {};
  if (::fstat(STDOUT_FILENO, &found) == 0 && S_ISREG(found.st_mode)) return;  // never keeps anyone waiting
  std::cout.flush();
  const auto state = std::cout.rdstate();
  output_ = std::cout.rdbuf(this);
  std::cout.setstate(state);
}

SpooledOutput::~SpooledOutput() { Finish(); }

void SpooledOutput::Finish() {
  if (output_ == nullptr) return;
  auto state = std::cout.rdstate();
  if (state == std::ios::goodbit && !(PutKept(true) && Put(pending_))) state = std::ios::badbit;
  pending_.clear();
  std::cout.rdbuf(output_);
  std::cout.setstate(state);
  output_ = nullptr;
}

SpooledOutput::int_type SpooledOutput::overflow(int_type byte) {
  if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
  const char text = traits_type::to_char_type(byte);
  return xsputn(&text, 1) == 1 ? byte : traits_type::eof();
}

std::streamsize SpooledOutput::xsputn(const char* bytes, std::streamsize count) {
  pending_.append(bytes, static_cast<std::size_t>(count));
  std::string_view rest = pending_;
  for (; rest.size() >= kPipePart; rest.remove_prefix(kPipePart)) {
    if (!HandOver(rest.substr(0, kPipePart))) return 0;
  }
  pending_.erase(0, pending_.size() - rest.size());
  return count;
}

int SpooledOutput::sync() {
  const bool is_done = pending_.empty() || HandOver(pending_);
  pending_.clear();
  return is_done ? 0 : -1;
}

// At most kPipePart bytes.
bool SpooledOutput::HandOver(std::string_view bytes) {
  if (!PutKept(false)) return false;
  if (taken_ == kept_ && IsReady()) return Put(bytes);
  return Keep(bytes) || (PutKept(true) && Put(bytes));
}

bool SpooledOutput::Put(std::string_view bytes) {
  const auto count = static_cast<std::streamsize>(bytes.size());
  return output_->sputn(bytes.data(), count) == count && output_->pubsync() == 0;
}

// Of what is kept, as much as is taken at once, or all.
bool SpooledOutput::PutKept(bool waits) {
  std::array<char, kPipePart> part;
  while (taken_ < kept_ && (waits || IsReady())) {
    const auto size = std::min<std::size_t>(part.size(), static_cast<std::size_t>(kept_ - taken_));
    if (std::fseek(file_.get(), taken_, SEEK_SET) != 0 ||
        std::fread(part.data(), 1, size, file_.get()) != size || !Put({part.data(), size})) {
      return false;
    }
    taken_ += static_cast<long>(size);
  }
  return true;
}

bool SpooledOutput::Keep(std::string_view bytes) {
  if (!file_) file_.reset(std::tmpfile());
  // Without a buffer of its own, nothing is half written when there is no room.
  if (!file_ || (kept_ == 0 && std::setvbuf(file_.get(), nullptr, _IONBF, 0) != 0)) return false;
  if (std::fseek(file_.get(), kept_, SEEK_SET) != 0) return false;
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) return false;
  kept_ += static_cast<long>(bytes.size());
  return true;
}

// Waits as long as the patience lasts.
bool SpooledOutput::IsReady() {
  using Clock = std::chrono::steady_clock;
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  const auto begin = Clock::now();
  const bool is_ready = ::poll(&output, 1, patience_milliseconds_) > 0;  // a fault shows in writing
  const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count();
  patience_milliseconds_ = std::max(0, patience_milliseconds_ - static_cast<int>(waited));
  return is_ready;
}

}  // namespace quillmark::tool
