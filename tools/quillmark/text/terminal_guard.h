// Keeps what fonts and file names hold from steering a terminal: all that a stream writes to one passes
// through a guard, whichever form or message it belongs to. Files and pipes get every byte as it is.
#ifndef QUILLMARK_TOOL_TEXT_TERMINAL_GUARD_H_
#define QUILLMARK_TOOL_TEXT_TERMINAL_GUARD_H_

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace quillmark::tool {

// Stands between a stream and its buffer while it lives, where the descriptor that the buffer writes to is a
// terminal. Line feeds and tabs pass; other hidden characters, and bytes of no character, are escaped.
class TerminalGuard : public std::streambuf {
 public:
  TerminalGuard(std::ostream& out, int descriptor);
  ~TerminalGuard() override;
  TerminalGuard(const TerminalGuard&) = delete;
  TerminalGuard& operator=(const TerminalGuard&) = delete;

  // Writes as it is what the tool itself says to the terminal.
  void WriteThrough(std::string_view text);

 protected:
  int_type overflow(int_type byte) override;
  std::streamsize xsputn(const char* bytes, std::streamsize count) override;
  int sync() override;

 private:
  bool Write(std::string_view text);
  bool WriteRest();

  std::ostream& out_;
  std::streambuf* guarded_ = nullptr;  // null where nothing is guarded
  std::string cut_;                    // beginning of a character whose other bytes are still to come
};

// Writes the tool's own control sequences, past the stream's guard if it has one.
void WriteControls(std::ostream& out, std::string_view text);

}  // namespace quillmark::tool

#endif
