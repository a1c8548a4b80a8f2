// SortedPairs: a long dictionary of texts, looked up in the text of its property list. An object for each of
// the 22,000 families would take longer to make than most fonts take to read. Tests:
// tests/knowledge/lookup_tables_test.cc; fuzz/table_fuzzer.cc.
#ifndef QUILLMARK_KNOWLEDGE_SORTED_PAIRS_H_
#define QUILLMARK_KNOWLEDGE_SORTED_PAIRS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/core_foundation/cf_ref.h"
#include "support/om_string.h"

namespace quillmark {

class SortedPairs {
 public:
  // The entries of the dictionary under `key` in the outermost dictionary of `list`, whose bytes the result
  // keeps. Nothing for a list that is not laid out as data/generate.py writes it: a line for each key and for
  // each value, indented by two tabs, with the keys in ascending order of their bytes. Such a list must be
  // parsed whole.
  static std::optional<SortedPairs> Find(CFRef<CFDataRef> list, const char* key);

  // The outermost dictionary; a mark stands in place of these entries.
  CFDictionaryRef others() const { return others_.get(); }
  // The value of a key, both in UTF-8; nothing for a key that is not there.
  std::optional<std::string> ValueOf(OmString key) const;

 private:
  SortedPairs() = default;

  CFRef<CFDataRef> list_;
  CFRef<CFDictionaryRef> others_;
  std::vector<std::uint32_t> starts_;  // of the pairs in the list
};

}  // namespace quillmark

#endif
