// The scan from a font's names to style components, in the light form that the matcher works on: components
// are named by their entries of the keyword table, not copied. Results live as long as the loaded table.
// Tests: tests/knowledge/style_scan_test.cc.
#ifndef QUILLMARK_KNOWLEDGE_STYLE_SCANNER_H_
#define QUILLMARK_KNOWLEDGE_STYLE_SCANNER_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "knowledge/font_style_scan.h"

namespace quillmark {

struct ScannedComponent {
  std::int32_t constant;
  bool is_modifier;
  const SStyleComponent* entry;  // null for a component that a rule adds, not a word of the table
};

// Time and memory are linear in the lengths of the names.
std::vector<ScannedComponent> ScanNames(std::string_view primary, std::string_view secondary);

}  // namespace quillmark

#endif
