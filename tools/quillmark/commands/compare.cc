// quillmark compare: the faces that two files share, attribute by attribute.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "api/creation.h"
#include "api/font_array.h"
#include "commands/commands.h"
#include "commands/shared_options.h"
#include "commands/tables_check.h"
#include "faces/face_comparison.h"
#include "faces/stored_text.h"
#include "output/json_form.h"
#include "output/output.h"
#include "output/table.h"
#include "reasons/printer_fonts.h"
#include "reasons/reason.h"
#include "reasons/watched_files.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

struct Side {
  std::string path;
  FontArray array;
  std::optional<StoredForm> form;  // nothing for a font file
};

// False, and a line on standard error, when the file gives no face.
bool Load(Side& side) {
  const WatchedFiles files;
  const WatchedFiles text_files;  // a text is whole whatever became of the forks beside it
  CreationResult result = CreateFaces(files, side.path, QM_ATTRIBUTES_ALL);
  if (result.faces.size() > 0 && !files.failure()) {
    side.array.reset(new QM_FontArray(std::move(result.faces)));
  } else if (std::optional<StoredFaces> stored = ReadStored(text_files, side.path);
             stored && stored->array->size() > 0 && !text_files.failure()) {
    side.array = std::move(stored->array);
    side.form = stored->form;
  } else {
    PrinterFontFamilies families;
    ReportFault(side.path, files.failure()        ? files.WhyUnread(side.path)
                           : text_files.failure() ? text_files.WhyUnread(side.path)
                                                  : Explain(files, side.path, result, families).reason);
    return false;
  }
  return true;
}

// Stored forms hold canonical foundries, bare version numbers and cut texts: a font file is converted to the
// stored form that it is compared with.
bool BringToForm(Side& side, StoredForm form) {
  auto stored = ParseStored(form == StoredForm::kXml ? XmlText(*side.array) : PropertyListText(*side.array));
  if (!stored) {
    ReportFault(side.path, "its names cannot be stored, so no stored text compares with it");
    return false;
  }
  side.array = std::move(stored->array);
  return true;
}

struct ComparedPair {
  FacePair faces;
  std::string name;  // the PostScript name, or what stands in for it in A
  std::vector<ComparedAttribute> attributes;
};

// Indexed by Verdict.
constexpr struct {
  const char* in_json;
  const char* in_table;
} kWords[] = {{"same", "same"},       {"sameButForCase", "differs in case"},
              {"differs", "differs"}, {"onlyA", "only A"},
              {"onlyB", "only B"},    {"unknown", "cannot tell"}};

void WriteJson(const Side& a, const Side& b, const std::vector<ComparedPair>& pairs) {
  Json list = Json::array();
  for (const ComparedPair& pair : pairs) {
    Json attributes = Json::array();
    for (const ComparedAttribute& attribute : pair.attributes) {
      const char* const word = kWords[static_cast<std::size_t>(attribute.verdict)].in_json;
      Json object = {{"attribute", attribute.name}, {"verdict", word}};
      if (attribute.verdict != Verdict::kOnlyB) object["a"] = attribute.value_a;
      if (attribute.verdict != Verdict::kOnlyA) object["b"] = attribute.value_b;
      attributes.push_back(std::move(object));
    }
    list.push_back({{"postScriptName", pair.name},
                    {"faceA", pair.faces.a},
                    {"faceB", pair.faces.b},
                    {"attributes", std::move(attributes)}});
  }
  const Json whole = {{"a", a.path}, {"b", b.path}, {"pairs", std::move(list)}};
  WriteJsonDocument(std::cout, whole);
}

void WriteTables(const Side& a, const Side& b, const std::vector<ComparedPair>& pairs) {
  std::cout << "A: " << Printable(a.path) << "\nB: " << Printable(b.path) << '\n';
  for (const ComparedPair& pair : pairs) {
    std::vector<std::vector<std::string>> rows;
    for (const ComparedAttribute& attribute : pair.attributes) {
      rows.push_back({attribute.name, kWords[static_cast<std::size_t>(attribute.verdict)].in_table,
                      attribute.value_a, attribute.value_b});
    }
    std::cout << '\n'
              << Printable(pair.name) << ": face " << pair.faces.a << " of A, face " << pair.faces.b
              << " of B\n";
    WriteTable({{"ATTRIBUTE"}, {"VERDICT"}, {"A"}, {"B"}}, rows);
  }
}

void WriteSummary(const Side& a, const Side& b, const std::vector<ComparedPair>& pairs,
                  std::size_t conflicts) {
  std::set<std::uint32_t> partners;
  for (const ComparedPair& pair : pairs) partners.insert(pair.faces.b);
  std::cerr << pairs.size() << (pairs.size() == 1 ? " pair of faces, " : " pairs of faces, ") << conflicts
            << (conflicts == 1 ? " conflict" : " conflicts")
            << "; without a partner: " << a.array->size() - pairs.size() << " of A, "
            << b.array->size() - partners.size() << " of B\n";
}

int Compare(Side a, Side b, const std::string& format) {
  LoadTables({QM_ATTRIBUTE_FOUNDRY});
  const bool loaded_a = Load(a);
  if (!Load(b) || !loaded_a) return 1;
  const bool stored = a.form || b.form;
  if (stored && !a.form && !BringToForm(a, *b.form)) return 1;
  if (stored && !b.form && !BringToForm(b, *a.form)) return 1;

  std::vector<ComparedPair> pairs;
  std::size_t conflicts = 0;
  for (const FacePair pair : PairFaces(*a.array, *b.array)) {
    ComparedPair compared{pair, a.array->view(pair.a).postScriptName.str(),
                          CompareFaces(*a.array, *b.array, pair, stored)};
    for (const ComparedAttribute& attribute : compared.attributes) {
      if (IsConflict(attribute.verdict)) ++conflicts;
    }
    pairs.push_back(std::move(compared));
  }
  if (pairs.empty()) {
    return ReportFault(a.path, "no face shares a name with one of " + Printable(b.path));
  }
  (format == "json" ? WriteJson : WriteTables)(a, b, pairs);
  FlushOutput();
  WriteSummary(a, b, pairs, conflicts);
  return conflicts == 0 ? 0 : kConflictStatus;
}

}  // namespace

void AddCompare(CLI::App& app, int& status) {
  struct Options {
    std::string a, b;
    std::string format;
  };
  CLI::App* command =
      app.add_subcommand("compare", "Compare the faces that two files share, attribute by attribute");
  const auto options = std::make_shared<Options>();
  AddResultForm(*command, options->format, "table");
  command->add_option("A", options->a, "Font file, or stored XML or property list")->required();
  command->add_option("B", options->b, "The other one")->required();
  command->callback([&status, options] {
    status = Compare({options->a, nullptr, {}}, {options->b, nullptr, {}}, options->format);
  });
}

}  // namespace quillmark::tool
