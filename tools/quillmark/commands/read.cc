// quillmark read: faces from stored XML, a property list or JSON, written in any form.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/tables_check.h"
#include "faces/attributes.h"
#include "faces/json_reader.h"
#include "faces/stored_text.h"
#include "files/standard_input.h"
#include "output/output.h"
#include "reasons/reason.h"
#include "reasons/watched_files.h"

namespace quillmark::tool {
namespace {

constexpr const char* kNoFaces =
    "neither stored XML, a property list of fonts, nor JSON as identify writes it";
constexpr const char* kNoFacesInList = "a property list that is cut short or damaged, or lists no fonts";

// Reads a file, or standard input. Returns why that failed; empty on success.
std::string ReadWhole(const std::string& file, std::string& text) {
  if (file == kStandardInputPath) return ReadStandardInput(text);
  if (const auto reason = WhyNotReadable(file)) return *reason;
  const WatchedFiles files;
  text = ReadText(files, file).value_or("");
  return files.WhyUnread(file);
}

// The faces of a text in any of the forms that can be read.
FacesOrFault FacesIn(const std::string& text, const std::string& file, bool wants_array) {
  if (BeginsAsJson(text)) return ReadJsonFaces(text, file, wants_array);
  const bool is_text = text.find('\0') == std::string::npos;
  std::optional<StoredFaces> stored = is_text ? ParseStored(text) : std::nullopt;
  if (!stored) {
    const bool is_list = text.find("<plist") != std::string::npos;
    return {{}, nullptr, is_list ? kNoFacesInList : kNoFaces, {}, false};
  }
  std::vector<Face> faces = FacesOf(stored->array.get(), file);
  for (Face& face : faces) face.fond_id = face.style = std::nullopt;  // stored forms do not carry them
  std::string not_read = NotRead(*stored);
  return {std::move(faces), std::move(stored->array), {}, std::move(not_read), stored->is_cut};
}

int Read(const std::string& file, const OutputForm& form) {
  const std::unique_ptr<FaceWriter> writer = MakeWriter(form, std::cout);
  LoadTables(kEveryNeed);
  FacesOrFault read;
  std::string text;
  read.fault = ReadWhole(file, text);
  if (read.fault.empty()) read = FacesIn(text, file, writer->WritesArray());
  const std::string shown = file == kStandardInputPath ? kStandardInputName : file;
  if (!read.fault.empty()) return ReportFault(shown, read.fault);
  writer->Add(std::move(read.faces), std::move(read.array));
  writer->Finish();
  FlushOutput();
  if (read.is_cut) {
    return ReportFault(shown, "its faces are more than its bytes can hold; only the first ones are read");
  }
  if (!read.not_read.empty()) ReportFault(shown, read.not_read);
  return 0;
}

}  // namespace

void AddRead(CLI::App& app, int& status) {
  struct Options {
    std::string file;
    OutputForm form;
  };
  CLI::App* command =
      app.add_subcommand("read", "Read stored XML, a property list or JSON and write it in any form");
  const auto options = std::make_shared<Options>();
  AddOutputForm(*command, options->form);
  command->add_option("FILE", options->file, "The stored text; - for standard input")->required();
  command->callback([&status, options] { status = Read(options->file, options->form); });
}

}  // namespace quillmark::tool
