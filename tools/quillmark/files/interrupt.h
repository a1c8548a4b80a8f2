// Ctrl-C and SIGTERM during long work: the first makes it stop and keep its results so far, the second ends
// the process.
#ifndef QUILLMARK_TOOL_FILES_INTERRUPT_H_
#define QUILLMARK_TOOL_FILES_INTERRUPT_H_

namespace quillmark::tool {

// From here on the first such signal is only noted. A signal that the process was started to ignore, as by
// nohup, stays ignored.
void NoteInterrupts();

// The signal that was noted, or 0.
int Interrupted();

// The exit status of work that it ended early: as shells count, 128 and the signal's number.
int InterruptedStatus();

}  // namespace quillmark::tool

#endif
