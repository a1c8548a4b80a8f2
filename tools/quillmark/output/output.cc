#include "output/output.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "api/font_array.h"
#include "faces/fields.h"
#include "faces/stored_text.h"
#include "output/json_form.h"
#include "output/table_form.h"
#include "output/tsv_form.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

using Fields = std::vector<const Field*>;

class JsonWriter : public FaceWriter {
 public:
  JsonWriter(std::ostream& out, Fields fields) : json_(out), fields_(std::move(fields)) {}
  void Add(std::vector<Face> faces, FontArray) override {
    std::string objects;  // of the whole file, or none when there is too little memory
    for (const Face& face : faces) {
      if (!objects.empty()) objects += json_.Between();
      objects += JsonObject(face, fields_);
    }
    if (!objects.empty()) json_.Add(objects);
  }
  void Finish() override { json_.Finish(); }
  bool WritesAtOnce() const override { return true; }

 private:
  JsonArray json_;
  Fields fields_;
};

// Flushes the lines of each file together, so that a reader of a pipe gets whole lines without delay; those
// of a file with very many faces in parts.
class LineWriter : public FaceWriter {
 public:
  static constexpr std::size_t kMostBytesHeld = std::size_t{64} * 1024;
  using Line = std::string (*)(const Face&, const Fields&);
  LineWriter(std::ostream& out, std::string header, Line line, Fields fields)
      : out_(out), header_(std::move(header)), line_(line), fields_(std::move(fields)) {}
  void Add(std::vector<Face> faces, FontArray) override {
    Finish();
    std::string lines;
    for (const Face& face : faces) {
      lines += line_(face, fields_);
      if (lines.size() < kMostBytesHeld && &face != &faces.back()) continue;
      out_ << lines << std::flush;
      lines.clear();
    }
  }
  void Finish() override { out_ << std::exchange(header_, {}) << std::flush; }
  bool WritesAtOnce() const override { return true; }

 private:
  std::ostream& out_;
  std::string header_;  // until it is written
  Line line_;
  Fields fields_;
};

class ArrayWriter : public FaceWriter {
 public:
  using Form = std::string (*)(const QM_FontArray&);
  ArrayWriter(std::ostream& out, Form form) : out_(out), form_(form) {}
  void Add(std::vector<Face> faces, FontArray array) override {
    std::vector<Face>().swap(faces);  // freed first, so that both are not held while the array grows
    whole_.Append(std::move(*array));
  }
  void Finish() override { out_ << form_(whole_); }
  bool WritesArray() const override { return true; }

 private:
  std::ostream& out_;
  Form form_;
  QM_FontArray whole_;
};

std::string JsonLine(const Face& face, const Fields& fields) { return JsonObject(face, fields) + '\n'; }

Fields Chosen(const OutputForm& form) {
  Fields fields;
  for (const std::string& name : form.fields) fields.push_back(FindField(name));
  if (!fields.empty() && (form.format == "xml" || form.format == "plist")) {
    throw CLI::ValidationError("--fields", "the content of " + form.format + " is fixed");
  }
  return fields;
}

Fields Unasked() {
  Fields fields;
  for (const Field& field : AllFields()) {
    if (field.use != FieldUse::kOnRequest) fields.push_back(&field);
  }
  return fields;
}

}  // namespace

const std::vector<std::string> kFormats = {"table", "json", "jsonl", "tsv", "xml", "plist"};

FaceNeeds NeedsOfForm(const OutputForm& form) {
  if (form.format == "xml" || form.format == "plist") return {QM_ATTRIBUTES_ALL};
  return form.fields.empty() ? kEveryNeed : NeedsOf(Chosen(form));
}

std::unique_ptr<FaceWriter> MakeWriter(const OutputForm& form, std::ostream& out) {
  Fields fields = Chosen(form);
  if (form.format == "json") return std::make_unique<JsonWriter>(out, std::move(fields));
  if (form.format == "jsonl") return std::make_unique<LineWriter>(out, "", JsonLine, std::move(fields));
  if (form.format == "tsv") {
    if (fields.empty()) fields = Unasked();
    std::string header = TsvHeader(fields);
    return std::make_unique<LineWriter>(out, std::move(header), TsvLine, std::move(fields));
  }
  if (form.format == "xml") return std::make_unique<ArrayWriter>(out, XmlText);
  if (form.format == "plist") return std::make_unique<ArrayWriter>(out, PropertyListText);
  return MakeTableWriter(out, std::move(fields), form.wide);
}

int ReportFault(const std::string& path, const std::string& fault) {
  std::cerr << ShownPath(path) << ": " << fault << '\n';
  return 1;
}

void FlushOutput() {
  if (!std::cout.flush()) throw std::runtime_error("standard output cannot be written");
}

}  // namespace quillmark::tool
