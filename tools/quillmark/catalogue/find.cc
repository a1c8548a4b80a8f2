// quillmark find: which files the fonts of these names are.
#include <algorithm>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_file.h"
#include "catalogue/name_lookup.h"
#include "catalogue/schema.h"
#include "catalogue/snapshot.h"
#include "catalogue/spooled_output.h"
#include "catalogue/update.h"
#include "faces/fields.h"
#include "files/interrupt.h"
#include "files/path_list.h"
#include "output/json_form.h"
#include "output/table.h"
#include "text/printable.h"
#include "text/terminal.h"

namespace quillmark::tool {
namespace {

constexpr int kWrongUsage = 2;
constexpr int kSomethingMissing = 4;
constexpr int kSomethingAmbiguous = 3;

// Blanks around a name, and what marks a text as UTF-8, are no part of it.
std::string Trimmed(std::string name) {
  constexpr const char* kMark = "\xEF\xBB\xBF";
  constexpr const char* kBlanks = " \t\r\n";
  if (name.starts_with(kMark)) name.erase(0, 3);
  name.erase(0, std::min(name.find_first_not_of(kBlanks), name.size()));
  name.erase(name.find_last_not_of(kBlanks) + 1);
  return name;
}

// Writes the answers in the wanted form.
class Answers {
 public:
  Answers(std::string format, NameLookup& lookup)
      : format_(std::move(format)),
        lookup_(lookup),
        table_({{"NAME"},
                {"VERDICT", false, 0},
                {"RULE", false, 6},
                {"POSTSCRIPT NAME", false, 2},
                {"VERSION", false, 4},
                {"CHECKSUM", false, 3},
                {"#", false, 5},
                {"FILE", true, 0}}) {
    if (format_ == "json") array_.emplace(std::cout);
  }

  void Add(const std::string& query, const FoundName& found) {
    if (array_) {
      array_->Add("");  // what it is follows piece by piece, as there may be any number of faces
      WriteJson(query, found);
    } else if (format_ == "jsonl") {
      WriteJson(query, found);
      std::cout << std::endl;
    } else {
      AddRows(query, found);
    }
  }
  void Finish() {
    if (array_) array_->Finish();
    if (format_ == "table" && table_.size() > 0) table_.Write(std::cout, OutputLook());
    FlushOutput();
  }

 private:
  void ForEachFace(const FoundName& found, const std::function<void(const Face&)>& tell) {
    for (const Face& face : found.faces) tell(face);
    lookup_.TellMore(found, tell);
  }
  void WriteJson(const std::string& query, const FoundName& found) {
    std::cout << "{\"query\":" << JsonText(query) << ",\"verdict\":" << JsonText(NameOf(found.verdict))
              << ",\"rule\":" << (found.rule == nullptr ? "null" : JsonText(found.rule)) << ",\"faces\":[";
    const char* before = "";
    const auto write = [&](const Face& face) {
      std::cout << std::exchange(before, ",") << JsonObject(face, {});
    };
    ForEachFace(found, write);
    std::cout << "],\"guesses\":[";
    before = "";
    for (const Face& face : found.guesses) write(face);
    std::cout << "]}";
  }
  void AddRows(const std::string& query, const FoundName& found) {
    const std::string rule = found.rule == nullptr ? "" : found.rule;
    if (found.faces.empty()) table_.Add({query, NameOf(found.verdict), rule, "", "", "", "", ""});
    ForEachFace(found, [&](const Face& face) { AddRow(query, NameOf(found.verdict), rule, face); });
    for (const Face& face : found.guesses) AddRow(query, "guess", "", face);
  }
  void AddRow(const std::string& query, const std::string& verdict, const std::string& rule,
              const Face& face) {
    table_.Add({query, verdict, rule, face.post_script_name, face.version, Hex(face.checksum),
                face.index == 0 ? "" : std::to_string(face.index), face.path});
  }

  const std::string format_;
  NameLookup& lookup_;
  Table table_;
  std::optional<JsonArray> array_;
};

class Search {
 public:
  Search(const NameSearch& search, Database& database)
      : search_(search), database_(database), lookup_(database), answers_(search.format, lookup_) {}

  // Returns the exit status.
  int Run() {
    for (const std::string& name : search_.names) Find(name);
    if (!search_.names_from.empty() && !FindListed()) return kWrongUsage;
    answers_.Finish();
    if (!could_be_read_) return 1;
    if (verdicts_.contains(NameVerdict::kMissing) || verdicts_.contains(NameVerdict::kNear))
      return kSomethingMissing;
    return verdicts_.contains(NameVerdict::kAmbiguous) ? kSomethingAmbiguous : 0;
  }

 private:
  void Find(const std::string& given) {
    const std::string name = Trimmed(given);
    if (name.empty()) return;
    // An answer is of one commit; waiting for the next name keeps no update from its own.
    database_.Run("BEGIN");
    const FoundName found = lookup_.Find(name, search_.like);
    verdicts_.insert(found.verdict);
    if (found.more.empty()) {
      database_.Run("COMMIT");
      answers_.Add(name, found);
    } else {
      SpooledOutput output;
      answers_.Add(name, found);
      database_.Run("COMMIT");
      output.Finish();
    }
  }

  // False where there is no name at all.
  bool FindListed() {
    PathList list(
        search_.names_from, search_.names_are_nul_separated ? '\0' : '\n', [] { return Interrupted() != 0; },
        "name");
    while (const auto name = list.Next()) Find(*name);
    could_be_read_ = list.fault().empty();
    if (!could_be_read_) std::cerr << list.name() + ": " + list.fault() + '\n';
    if (!could_be_read_ || !verdicts_.empty() || Interrupted() != 0) return true;
    std::cerr << list.name() + ": the list holds no name\n";
    return false;
  }

  const NameSearch& search_;
  Database& database_;
  NameLookup lookup_;
  Answers answers_;
  std::set<NameVerdict> verdicts_;
  bool could_be_read_ = true;
};

int FindIn(const NameSearch& search, Database& database, bool is_complete) {
  const int status = Search(search, database).Run();
  if (Interrupted() != 0) return InterruptedStatus();
  return is_complete || status == kWrongUsage ? status : 1;
}

}  // namespace

int FindNames(const NameSearch& search) {
  NoteInterrupts();
  if (!search.catalogue.empty()) {
    Database database = OpenCatalogue(search.catalogue);
    return FindIn(search, database, TellWhetherComplete(database, search.catalogue));
  }
  // A catalogue for this search alone, which goes to a temporary file when it is large.
  Database database("", Database::Access::kCreate);
  CreateSchema(database);
  CatalogueUpdate update;
  update.roots = search.places;
  update.work = search.work;
  const int status = UpdateDatabase(database, update, false);
  if (Interrupted() != 0) return InterruptedStatus();
  return FindIn(search, database, status == 0);
}

}  // namespace quillmark::tool
