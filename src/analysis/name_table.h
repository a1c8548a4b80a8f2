// Names, version and maker's text out of the `name` table of an sfnt font (OpenType name table), with a fixed
// order of preference among its records. Tests: tests/analysis/name_table_test.cc; fuzz/sfnt_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_NAME_TABLE_H_
#define QUILLMARK_ANALYSIS_NAME_TABLE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "analysis/face_outputs.h"
#include "analysis/sfnt_data.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

// True when the table was read and held at least one non-empty string. The wanted outputs are assigned once
// there is a valid table, also with empty values, but for display_name, which is assigned only while it is
// empty. Without a valid table nothing is written.
bool getMetaDataFromNamesTable(const SfntData& font, const NameOutputs& outputs);

// The same of one of many fonts in a file: texts that several of them share are judged once.
class NameContentMemory;
bool getMetaDataFromNamesTable(const SfntData& font, NameContentMemory& memory, const NameOutputs& outputs);

struct NameMemory;

// While one of these lives on a thread, the table of an `sfnt` resource is read once, however many styles
// name it. The resource file must be open as long. They may nest; the innermost one serves.
class NameMemoryScope {
 public:
  NameMemoryScope();
  ~NameMemoryScope();
  NameMemoryScope(const NameMemoryScope&) = delete;
  NameMemoryScope& operator=(const NameMemoryScope&) = delete;

 private:
  std::unique_ptr<NameMemory> memory_;
  NameMemory* const outer_;
};

// The same of the font that is the resource at `place`, remembered while a scope lives.
bool getMetaDataFromNamesTable(const SfntData& font, const std::optional<ResourcePlace>& place,
                               const NameOutputs& outputs);

// The PostScript name alone, with illegal characters replaced; empty when there is none.
void getPostScriptNameFromNamesTable(const SfntData& font, std::string& name);

// Blank ( ) / [ ] { } become "-".
void ReplaceIllegalCharsInPostScriptName(std::string& name);
void ReplaceIllegalCharsInPostScriptName(OmString& name);

}  // namespace quillmark

#endif
