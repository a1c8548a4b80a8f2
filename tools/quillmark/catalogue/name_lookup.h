// NameLookup: which faces of a catalogue a name stands for, by which rule, and how sure that is. However many
// these are, few of them are held at a time. Tests: tests/cli/find_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_NAME_LOOKUP_H_
#define QUILLMARK_TOOL_CATALOGUE_NAME_LOOKUP_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/database.h"
#include "catalogue/face_rows.h"

namespace quillmark::tool {

enum class NameVerdict {
  kExact,      // one font in one file
  kCopies,     // several files with the same data
  kAmbiguous,  // different data
  kNear,       // only names that are alike by the loose comparison
  kMissing,
};
const char* NameOf(NameVerdict verdict);

using FaceKey = std::pair<std::int64_t, std::int64_t>;  // file and face

struct FoundName {
  NameVerdict verdict = NameVerdict::kMissing;
  const char* rule = nullptr;  // by which the faces were found; null for none
  std::vector<Face> faces;     // in the order of list; at most kMostHeld
  std::vector<FaceKey> more;   // those behind them
  std::vector<Face> guesses;   // of what is missing: faces of the same class and styles

  static constexpr std::size_t kMostHeld = 64;
};

class NameLookup {
 public:
  explicit NameLookup(Database& database);

  // The caller's transaction lasts until the faces behind the first ones are told, too.
  FoundName Find(const std::string& name, bool wants_guesses);
  void TellMore(const FoundName& found, const std::function<void(const Face&)>& tell);

 private:
  using Keys = std::vector<FaceKey>;                 // in the order of list
  using KeysByStyles = std::map<std::string, Keys>;  // by the names of the styles that count
  struct Found {
    Face face;
    std::int32_t fond_id = -1;
    std::int64_t data_fork_size = 0;
    bool is_here = true;  // not a file of another machine
  };
  class Judgement;
  // Of a condition on faces. Most have no face or one, for which sorting is not begun.
  struct Search {
    Search(Database& database, const char* condition);
    Statement first_two, in_order;
  };

  void ForgetOldCommit();
  static Keys KeysIn(Statement& query);
  static Keys KeysOf(Search& search, const std::string& value);
  static KeysByStyles ByStyles(Statement& query, const std::string& value, std::size_t most);
  const KeysByStyles* FamilyOf(const std::string& name);  // null for none
  std::optional<Found> FoundAt(const FaceKey& key);
  Keys ByFamilyAndStyle(const std::string& name);
  Keys Near(const std::string& name);
  void Judge(const Keys& keys, FoundName& answer);
  std::vector<Face> Guesses(const std::string& name);

  FaceTable faces_;
  Search by_post_script_name_, by_full_name_, by_windows_full_name_;
  Statement commit_, by_family_, by_loose_name_, by_class_, place_;
  std::int64_t commit_seen_ = 0;
  // Names of one family, or of one class, mostly come many at a time.
  std::map<std::string, KeysByStyles> families_;  // by their names in lower-case ASCII
  std::size_t keys_of_families_ = 0;
  std::map<std::string, KeysByStyles> classes_;  // the first faces of each set of styles
};

}  // namespace quillmark::tool

#endif
