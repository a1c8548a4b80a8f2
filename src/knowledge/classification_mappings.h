// CClassificationMappings: the typographic class of a font family, from DefaultClassifications.plist.
// Shared and loaded like the foundry table. "--" stands for no class.
// Tests: tests/knowledge/lookup_tables_test.cc, fuzz/table_fuzzer.cc.
#ifndef QUILLMARK_KNOWLEDGE_CLASSIFICATION_MAPPINGS_H_
#define QUILLMARK_KNOWLEDGE_CLASSIFICATION_MAPPINGS_H_

#include <cstdint>
#include <optional>
#include <vector>

#include "knowledge/sorted_pairs.h"
#include "platform/core_foundation/cf_ref.h"
#include "support/om_string.h"

namespace quillmark {

class CClassificationMappings {
 public:
  static CClassificationMappings* GetSharedClassificationMappings();
  static OmString GetUnknownClassificationName();  // "--"

  CClassificationMappings();
  CClassificationMappings(const CClassificationMappings&) = delete;
  CClassificationMappings& operator=(const CClassificationMappings&) = delete;

  void LoadMappings();
  // Whether the families are missing, unreadable or empty.
  bool empty() const;

  // The class of the family whose lower-cased name is a key of the table, whole; else "--".
  OmString GetClassNameFromFontFamily(const OmString& family) const;
  // Replaces each built-in class equal to `old_name` by `new_name`; returns how many.
  std::int32_t ReplaceDefaultClassification(CFStringRef old_name, CFStringRef new_name);
  void GetListOfBuiltinClasses(std::vector<OmString>* classes) const;

 private:
  CFRef<CFDictionaryRef> table_;
  // From family to class: of a list laid out as the shipped one the pairs, of any other the table's
  // dictionary.
  std::optional<SortedPairs> pairs_;
  CFRef<CFDictionaryRef> mappings_;
};

}  // namespace quillmark

#endif
