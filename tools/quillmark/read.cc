// quillmark read: an array from stored XML or a property list, written in any form.
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "commands.h"
#include "output.h"
#include "reason.h"
#include "shared_options.h"
#include "tables_check.h"

namespace quillmark::tool {
namespace {

int Read(const std::string& file, const OutputForm& form) {
  const std::unique_ptr<FaceWriter> writer = MakeWriter(form, std::cout);
  LoadTables();
  const auto fail = [&](const std::string& reason) {
    std::cerr << ShownPath(file) << ": " << reason << '\n';
    return 1;
  };
  if (const auto reason = WhyNotReadable(file)) return fail(*reason);
  std::ifstream in(file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  if (in.bad() || !in.is_open()) return fail("cannot be read");

  // The property list first: its reader refuses the XML form, while the XML form's is a search that would
  // find its tags inside the strings of a list. Both would take a text with a NUL for the part before it.
  QM_FontArray* made = nullptr;
  if (text.find('\0') != std::string::npos || (QM_CreateSpecifierFromPropertyList(text.c_str(), &made) != 0 &&
                                               QM_CreateSpecifierFromXML(text.c_str(), &made) != 0)) {
    return fail("neither stored XML nor a property list of fonts");
  }
  const FontArray array(made);
  std::vector<Face> faces = FacesOf(array.get(), file);
  for (Face& face : faces) face.fond_id = face.style = std::nullopt;  // stored forms do not carry them
  writer->Add(faces, *array);
  writer->Finish();
  return 0;
}

}  // namespace

void AddRead(CLI::App& app, int& status) {
  struct Options {
    std::string file;
    OutputForm form;
  };
  CLI::App* command =
      app.add_subcommand("read", "Read stored XML or a property list and write it in any form");
  const auto options = std::make_shared<Options>();
  AddOutputForm(*command, options->form);
  command->add_option("file", options->file, "The stored text")->required();
  command->callback([&status, options] { status = Read(options->file, options->form); });
}

}  // namespace quillmark::tool
