// The forms in which faces are written, chosen by name.
#ifndef QUILLMARK_TOOL_OUTPUT_OUTPUT_H_
#define QUILLMARK_TOOL_OUTPUT_OUTPUT_H_

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "output/face_writer.h"

namespace quillmark::tool {

// What --format takes.
extern const std::vector<std::string> kFormats;

struct OutputForm {
  std::string format = "table";     // one of kFormats
  std::vector<std::string> fields;  // names of chosen ones, in their order; empty for the form's own
  bool wide = false;                // a table of every column, uncut, whatever the terminal
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
