#include "output.h"

#include "array_forms.h"
#include "json_form.h"
#include "table_form.h"

namespace quillmark::tool {
namespace {

class TableWriter : public FaceWriter {
 public:
  explicit TableWriter(std::ostream& out) : out_(out) {}
  void Add(const std::vector<Face>& faces, const QM_FontArray&) override {
    faces_.insert(faces_.end(), faces.begin(), faces.end());
  }
  void Finish() override {
    if (!faces_.empty()) WriteFaceTable(out_, faces_, TerminalWidth());
  }

 private:
  std::ostream& out_;
  std::vector<Face> faces_;
};

class JsonWriter : public FaceWriter {
 public:
  explicit JsonWriter(std::ostream& out) : json_(out) {}
  void Add(const std::vector<Face>& faces, const QM_FontArray&) override {
    for (const Face& face : faces) json_.Add(face);
  }
  void Finish() override { json_.Finish(); }

 private:
  JsonArray json_;
};

class ArrayWriter : public FaceWriter {
 public:
  using Form = std::string (*)(const QM_FontArray&);
  ArrayWriter(std::ostream& out, Form form) : out_(out), form_(form) {}
  void Add(const std::vector<Face>&, const QM_FontArray& array) override { Join(*whole_, array); }
  void Finish() override { out_ << form_(*whole_); }

 private:
  std::ostream& out_;
  Form form_;
  FontArray whole_ = EmptyArray();
};

}  // namespace

const std::vector<std::string> kFormats = {"table", "json", "xml", "plist"};

std::unique_ptr<FaceWriter> MakeWriter(const std::string& format, std::ostream& out) {
  if (format == "json") return std::make_unique<JsonWriter>(out);
  if (format == "xml") return std::make_unique<ArrayWriter>(out, XmlText);
  if (format == "plist") return std::make_unique<ArrayWriter>(out, PropertyListText);
  return std::make_unique<TableWriter>(out);
}

}  // namespace quillmark::tool
