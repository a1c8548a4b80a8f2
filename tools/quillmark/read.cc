// quillmark read: an array from stored XML or a property list, written in any form.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "commands.h"
#include "output.h"
#include "reason.h"
#include "shared_options.h"
#include "stored_text.h"
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
  const std::optional<StoredFaces> stored = ReadStored(file);
  if (!stored) return fail("neither stored XML nor a property list of fonts");
  std::vector<Face> faces = FacesOf(stored->array.get(), file);
  for (Face& face : faces) face.fond_id = face.style = std::nullopt;  // stored forms do not carry them
  writer->Add(faces, *stored->array);
  writer->Finish();
  FlushOutput();
  if (const std::string told = NotRead(*stored); !told.empty()) {
    std::cerr << ShownPath(file) << ": " << told << '\n';
  }
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
