// NameLookup: which faces of a catalogue a name stands for, by which rule, and how sure that is. Tests:
// tests/cli/find_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_NAME_LOOKUP_H_
#define QUILLMARK_TOOL_CATALOGUE_NAME_LOOKUP_H_

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
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

struct FoundName {
  NameVerdict verdict = NameVerdict::kMissing;
  const char* rule = nullptr;  // by which the faces were found; null for none
  std::vector<Face> faces;     // in the order of list
  std::vector<Face> guesses;   // of what is missing: faces of the same class and styles
};

class NameLookup {
 public:
  explicit NameLookup(Database& database);

  FoundName Find(const std::string& name, bool wants_guesses);

 private:
  struct Found {
    Face face;
    std::int32_t fond_id = -1;
    std::int64_t data_fork_size = 0;
    std::tuple<std::string, std::int64_t, std::string, std::string> place;  // by which list sorts files
  };
  using Key = std::pair<std::int64_t, std::int64_t>;  // file and face

  std::vector<Key> KeysOf(Statement& query, const std::string& value);
  static std::vector<Key> KeysIn(Statement& query);
  std::vector<Found> FacesOf(const std::vector<Key>& keys);
  std::vector<Found> ByFamilyAndStyle(const std::string& name);
  std::vector<Found> Near(const std::string& name);
  std::vector<Face> Guesses(const std::string& name);
  static bool HaveOneDatum(const std::vector<Found>& faces);

  FaceTable faces_;
  Statement by_post_script_name_, by_full_name_, by_windows_full_name_, by_family_, by_loose_name_, by_class_,
      place_;
  std::map<std::pair<std::string, std::string>, std::vector<Face>> guesses_;  // by class and styles
};

}  // namespace quillmark::tool

#endif
