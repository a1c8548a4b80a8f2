#include "text/terminal_guard.h"

#include "text/printable.h"
#include "text/terminal.h"
#include "text/utf8_character.h"

namespace quillmark::tool {
namespace {

bool Passes(const Character& c) {
  return c.code == '\n' || c.code == '\t' || (c.code != kNoCharacter && !IsHidden(c.code));
}

bool PutAll(std::streambuf& buffer, std::string_view text) {
  const auto count = static_cast<std::streamsize>(text.size());
  return buffer.sputn(text.data(), count) == count;
}

}  // namespace

TerminalGuard::TerminalGuard(std::ostream& out, int descriptor) : out_(out) {
  if (IsTerminal(descriptor)) guarded_ = out.rdbuf(this);
}

TerminalGuard::~TerminalGuard() {
  if (guarded_ == nullptr) return;
  (void)WriteRest();
  out_.rdbuf(guarded_);
}

void TerminalGuard::WriteThrough(std::string_view text) {
  if (!WriteRest() || !PutAll(*guarded_, text)) out_.setstate(std::ios::badbit);
}

TerminalGuard::int_type TerminalGuard::overflow(int_type byte) {
  if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
  const char text = traits_type::to_char_type(byte);
  return Write({&text, 1}) ? byte : traits_type::eof();
}

std::streamsize TerminalGuard::xsputn(const char* bytes, std::streamsize count) {
  return Write({bytes, static_cast<std::size_t>(count)}) ? count : 0;
}

// A cut character is kept until its other bytes are written.
int TerminalGuard::sync() { return guarded_->pubsync(); }

bool TerminalGuard::Write(std::string_view text) {
  const std::string whole = cut_ + std::string(text);
  cut_.clear();
  std::string safe;
  for (std::string_view rest = whole; !rest.empty();) {
    if (MayBeCutCharacter(rest)) {
      cut_ = rest;
      break;
    }
    const Character c = FirstCharacter(rest);
    safe += Passes(c) ? std::string(c.bytes) : Escaped(c);
    rest.remove_prefix(c.bytes.size());
  }
  return PutAll(*guarded_, safe);
}

// At the end, the bytes of a cut character are written as invalid ones.
bool TerminalGuard::WriteRest() {
  std::string safe;
  for (const char& byte : cut_) safe += Escaped({{&byte, 1}, kNoCharacter});
  cut_.clear();
  return PutAll(*guarded_, safe);
}

void WriteControls(std::ostream& out, std::string_view text) {
  if (auto* const guard = dynamic_cast<TerminalGuard*>(out.rdbuf())) {
    guard->WriteThrough(text);
    if (out.flags() & std::ios::unitbuf) out.flush();  // what << does by itself
  } else {
    out << text;
  }
}

}  // namespace quillmark::tool
