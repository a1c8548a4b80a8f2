#include "analysis/name_table.h"

#include <algorithm>
#include <string_view>

#include "analysis/name_record.h"
#include "platform/text_encoding.h"

namespace quillmark {
namespace {

enum Platform : std::int16_t { kPlatformMacintosh = 1, kPlatformWindows = 3 };
enum Language : std::int16_t { kMacintoshEnglish = 0, kWindowsUsEnglish = 0x409 };

// What the records said so far. Subfamilies are of no use to anyone and are not gathered.
struct Names {
  std::string copyright;
  std::string family;
  std::string typographic_family;
  std::string full_name;
  std::string windows_full_name;
  std::string version;
  std::string post_script_name;
  std::string manufacturer;
};

void AssignConditionally(std::string* target, const std::string& value, bool overwrite) {
  if (overwrite || target->empty()) *target = value;
}

void Store(const NameRecord& record, const std::string& text, bool overwrite, Names& names) {
  switch (record.name_id) {
    case 0:
      AssignConditionally(&names.copyright, text, overwrite);
      break;
    case 1:
      AssignConditionally(&names.family, text, overwrite);
      if (overwrite) names.typographic_family = text;
      break;
    case 4:
      if (record.platform_id == kPlatformWindows) AssignConditionally(&names.windows_full_name, text, false);
      AssignConditionally(&names.full_name, text, overwrite);
      break;
    case 5:
      AssignConditionally(&names.version, text, overwrite);
      break;
    case 6:
      if (IsAscii(text)) AssignConditionally(&names.post_script_name, text, overwrite);
      break;
    case 8:
      AssignConditionally(&names.manufacturer, text, overwrite);
      break;
    case 16:
      AssignConditionally(&names.typographic_family, text, overwrite);
      break;
    default:
      break;
  }
}

// Walks the records. True when any of them held text.
bool GatherNames(const std::vector<NameRecord>& records, Names& names) {
  bool any = false;
  bool macintosh_english_seen = false;
  NameTextDecoder decoder;
  for (const NameRecord& record : records) {
    const std::string text = decoder.Decode(record);
    if (text.empty()) continue;
    any = true;
    const bool overwrite =
        !macintosh_english_seen &&
        (record.encoding_id == 0 || record.language_id == 0 ||
         (record.language_id == kWindowsUsEnglish && record.platform_id == kPlatformWindows));
    // The first Macintosh English record itself still overwrites.
    if (record.language_id == kMacintoshEnglish && record.platform_id == kPlatformMacintosh) {
      macintosh_english_seen = true;
    }
    Store(record, text, overwrite, names);
  }
  return any;
}

const std::string& FirstNonEmpty(const std::string& a, const std::string& b) { return a.empty() ? b : a; }

void Write(OmString* output, const std::string& text) {
  if (output != nullptr) *output = text;
}

}  // namespace

bool getMetaDataFromNamesTable(const SfntData& font, const NameOutputs& outputs) {
  const auto records = ReadNameRecords(font);
  if (!records) return false;
  Names names;
  const bool any = GatherNames(*records, names);

  const std::string& post_script_name = FirstNonEmpty(names.post_script_name, names.full_name);
  const std::string& full_name = FirstNonEmpty(names.full_name, names.post_script_name);
  Write(outputs.foundry, FirstNonEmpty(names.manufacturer, names.copyright));
  Write(outputs.family_name, FirstNonEmpty(names.typographic_family, names.family));
  Write(outputs.version, names.version);
  if (outputs.post_script_name != nullptr) {
    *outputs.post_script_name = post_script_name;
    ReplaceIllegalCharsInPostScriptName(*outputs.post_script_name);
  }
  if (outputs.display_name != nullptr && outputs.display_name->empty()) {
    *outputs.display_name = post_script_name;
  }
  Write(outputs.full_name, full_name);
  Write(outputs.windows_full_name, FirstNonEmpty(names.windows_full_name, full_name));
  return any;
}

void getPostScriptNameFromNamesTable(const SfntData& font, std::string& name) {
  name.clear();
  OmString found;
  getMetaDataFromNamesTable(font, {.post_script_name = &found});
  name = found.str();
}

void ReplaceIllegalCharsInPostScriptName(std::string& name) {
  constexpr std::string_view kIllegal = " ()/[]{}";
  std::replace_if(
      name.begin(), name.end(), [&](char c) { return kIllegal.find(c) != std::string_view::npos; }, '-');
}

void ReplaceIllegalCharsInPostScriptName(OmString& name) {
  std::string text = name.str();
  ReplaceIllegalCharsInPostScriptName(text);
  name = text;
}

}  // namespace quillmark
