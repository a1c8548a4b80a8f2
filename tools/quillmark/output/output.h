// The forms in which faces are written, chosen by name, behind one interface for every command that lists
// faces.
#ifndef QUILLMARK_TOOL_OUTPUT_OUTPUT_H_
#define QUILLMARK_TOOL_OUTPUT_OUTPUT_H_

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "faces/face.h"

namespace quillmark::tool {

// What --format takes.
extern const std::vector<std::string> kFormats;

struct OutputForm {
  std::string format = "table";     // one of kFormats
  std::vector<std::string> fields;  // names of chosen ones, in their order; empty for the form's own
  bool wide = false;                // a table of every column, uncut, whatever the terminal
};

// Writes faces as they come (json, jsonl, tsv) or holds them to the end (table, xml, plist).
class FaceWriter {
 public:
  virtual ~FaceWriter() = default;
  // The faces of one file, as Face objects and as an array. A writer keeps the one it writes from and frees
  // the other.
  virtual void Add(std::vector<Face> faces, FontArray array) = 0;
  virtual void Finish() = 0;
  virtual bool WritesAtOnce() const = 0;
  // Whether the form is written from arrays; `faces` may then be empty, else `array` null.
  virtual bool WritesArray() const { return false; }
};

// What the faces must know that are written in this form.
FaceNeeds NeedsOfForm(const OutputForm& form);

// Throws CLI::ValidationError for fields of a form whose content is fixed. The names are those of fields.
std::unique_ptr<FaceWriter> MakeWriter(const OutputForm& form, std::ostream& out);

// A line on standard error about a file. Returns the status of a command that fails by what it tells.
int ReportFault(const std::string& path, const std::string& fault);

// Hands what was written to the system. Throws when standard output does not take it.
void FlushOutput();

}  // namespace quillmark::tool

#endif
