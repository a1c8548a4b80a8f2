// CFoundryNameTable: what a font says about its maker, turned into one canonical foundry name.
// The knowledge is FoundryNameTable.plist of the library's bundle, in whose order the first match wins.
// The shared table loads once, behind a lock, and lives as long as the process; a loaded table is only read.
// Tests: tests/knowledge/lookup_tables_test.cc, fuzz/table_fuzzer.cc.
#ifndef QUILLMARK_KNOWLEDGE_FOUNDRY_NAME_TABLE_H_
#define QUILLMARK_KNOWLEDGE_FOUNDRY_NAME_TABLE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "knowledge/foundry_pattern_index.h"
#include "support/om_string.h"

namespace quillmark {

class CFoundryNameTable {
 public:
  static CFoundryNameTable* GetSharedFoundryNameTable();

  CFoundryNameTable();
  CFoundryNameTable(const CFoundryNameTable&) = delete;
  CFoundryNameTable& operator=(const CFoundryNameTable&) = delete;

  void LoadTable();
  // Whether the list is missing, could not be read, or has no entries.
  bool empty() const { return entries_.empty(); }

  // One of the five creator codes that name a tool or system, not a maker. Case counts here, though not
  // below.
  static bool IsQuestionableCreatorCode(std::uint32_t creator_code);
  // True when an entry lists the code; its name goes to `foundry`. A name that is not empty on entry gives
  // false without a search.
  bool IsKnownCreatorCode(std::uint32_t creator_code, OmString* foundry) const;
  // True when an entry's pattern occurs in the lower-cased text; its name goes to `foundry` (may be null),
  // which false leaves as it was. Default entries met before the match go to `default_foundry` (may be null).
  bool ContainsKnownFoundryName(const OmString& text, OmString* foundry,
                                OmString* default_foundry = nullptr) const;
  // Creator code, then text, then the default entry, then "--".
  OmString GetCanonicalFoundryName(std::uint32_t creator_code, const OmString& text) const;

 private:
  // One dictionary of the list, in whose order the first match wins.
  struct Entry {
    std::optional<std::string> name;  // empty text is a name too
    std::vector<std::string> creator_codes;
    bool is_default = false;  // has an empty pattern, and a name
  };
  std::vector<Entry> entries_;  // none when the list could not be loaded
  FoundryPatternIndex patterns_;
};

}  // namespace quillmark

#endif
