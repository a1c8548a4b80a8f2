// TerminalGuard: keeps control characters in fonts and file names from reaching a terminal. All that a stream
// writes to a terminal passes through it; files and pipes get every byte unchanged.
#ifndef QUILLMARK_TOOL_TEXT_TERMINAL_GUARD_H_
#define QUILLMARK_TOOL_TEXT_TERMINAL_GUARD_H_

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace quillmark::tool {

// While it lives, replaces the buffer of a stream that writes to a terminal. Line feeds and tabs pass; other
// hidden characters, and bytes that are not valid UTF-8, are escaped.
class TerminalGuard : public std::streambuf {
 public:
  TerminalGuard(std::ostream& out, int descriptor);
  ~TerminalGuard() override;
  TerminalGuard(const TerminalGuard&) = delete;
  TerminalGuard& operator=(const TerminalGuard&) = delete;

  // Writes text of the tool's own, such as control sequences, without escaping it.
  void WriteThrough(std::string_view text);

 protected:
  int_type overflow(int_type byte) override;
  std::streamsize xsputn(const char* bytes, std::streamsize count) override;
  int sync() override;

 private:
  bool Write(std::string_view text);
  bool WriteRest();

  std::ostream& out_;
  std::streambuf* guarded_ = nullptr;  // null when the stream does not write to a terminal
  std::string cut_;                    // beginning of a character whose other bytes are still to come
};

// Writes the tool's own control sequences, past the stream's guard if it has one.
void WriteControls(std::ostream& out, std::string_view text);

}  // namespace quillmark::tool

#endif
