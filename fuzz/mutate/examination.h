// Takes one damaged input through the whole library and asks everything of what comes out: every getter for
// faces and for indexes that are none, in buffers of every awkward size, both stored forms written and read
// back. What a host is promised is checked on the way; a promise that is broken ends the process.
#ifndef QUILLMARK_FUZZ_MUTATE_EXAMINATION_H_
#define QUILLMARK_FUZZ_MUTATE_EXAMINATION_H_

#include <string>

namespace quillmark {

struct Examined {
  bool is_read = false;   // there was something left to ask
  double first_call = 0;  // the processor's seconds for the call that reads the input
  double all_calls = 0;   // and for all calls
};

Examined ExamineFontFile(const std::string& path);
Examined ExamineXml(const std::string& text);
Examined ExaminePropertyList(const std::string& text);
// Loads the knowledge table of that file name from the process's bundle folder, anew each time, and asks it.
Examined ExamineTable(const std::string& file_name);

}  // namespace quillmark

#endif
