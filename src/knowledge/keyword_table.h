// The style words and built-in styles of KeywordTable.plist, one set for the process, which OmFontStyleScan's
// functions read without a lock once it is loaded.
// Tests: tests/knowledge/style_scan_test.cc, fuzz/table_fuzzer.cc.
#ifndef QUILLMARK_KNOWLEDGE_KEYWORD_TABLE_H_
#define QUILLMARK_KNOWLEDGE_KEYWORD_TABLE_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "knowledge/font_style_scan.h"
#include "platform/core_foundation/cf_ref.h"

namespace quillmark {

class KeywordTable {
 public:
  static KeywordTable& Shared();  // never destroyed

  // Reads both arrays. Without "Components" it throws and changes nothing; without "Styles" it throws and
  // keeps the components. Malformed elements are left out.
  void Load(CFDictionaryRef root);

  // The first component, in the file's order, that lists the word; null when none does.
  const SStyleComponent* FindWord(std::string_view word) const;
  // Whether the constant names a component that compounds.
  bool Compounds(std::int32_t constant) const;
  const std::vector<SBuiltinStyle>& styles() const { return styles_; }
  // Whether the words or the styles are missing, unreadable or empty.
  bool empty() const { return components_.empty() || styles_.empty(); }

 private:
  struct WordHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view word) const { return std::hash<std::string_view>()(word); }
  };

  void LoadComponents(CFArrayRef elements);
  void LoadStyles(CFArrayRef elements);

  std::vector<SStyleComponent> components_;
  std::unordered_map<std::string, std::size_t, WordHash, std::equal_to<>> component_of_word_;
  std::map<std::int32_t, bool> compounds_;  // by constant; of those that share one the last component's
  std::vector<SBuiltinStyle> styles_;
};

}  // namespace quillmark

#endif
