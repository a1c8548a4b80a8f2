// SpooledOutput: standard output of a command that reads a catalogue meanwhile. Who reads a catalogue keeps
// updates back, and who reads standard output may be slow, as a pager is: what it does not take at once is
// kept in a temporary file. Tests: tests/cli/catalogue_file_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_SPOOLED_OUTPUT_H_
#define QUILLMARK_TOOL_CATALOGUE_SPOOLED_OUTPUT_H_

#include <cstdio>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>

namespace quillmark::tool {

// While it lives, stands before the buffer of std::cout. Where nothing can be kept, it waits as that does.
class SpooledOutput : public std::streambuf {
 public:
  SpooledOutput();
  ~SpooledOutput() override;
  SpooledOutput(const SpooledOutput&) = delete;
  SpooledOutput& operator=(const SpooledOutput&) = delete;

  // Hands over all that is kept, however long that takes. To be called when the catalogue is closed.
  void Finish();

 protected:
  int_type overflow(int_type byte) override;
  std::streamsize xsputn(const char* bytes, std::streamsize count) override;
  int sync() override;

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool HandOver(std::string_view bytes);
  bool Put(std::string_view bytes);
  bool PutKept(bool waits);
  bool Keep(std::string_view bytes);
  bool IsReady();

  std::streambuf* output_ = nullptr;
  std::string pending_;
  std::unique_ptr<std::FILE, Close> file_;  // what is kept; null before
  long kept_ = 0, taken_ = 0;               // bytes written to the file, and those that were read back
  int patience_milliseconds_;
};

}  // namespace quillmark::tool

#endif
