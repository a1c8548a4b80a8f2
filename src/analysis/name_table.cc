#include "analysis/name_table.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/name_content.h"
#include "analysis/name_record.h"

namespace quillmark {
namespace {

enum Platform : std::int16_t { kPlatformMacintosh = 1, kPlatformWindows = 3 };
enum Language : std::int16_t { kMacintoshEnglish = 0, kWindowsUsEnglish = 0x409 };

enum NameId : std::int16_t {
  kCopyright = 0,
  kFamily = 1,
  kFullName = 4,
  kVersion = 5,
  kPostScriptName = 6,
  kManufacturer = 8,
  kTypographicFamily = 16,
};

// Chooses among the records of one table. Of the records of a name, the last with a text that may overwrite
// gives it, failing that the first of the others. Only what the choice depends on is decoded: a table may
// hold 32,767 records of a kilobyte each, of which all but a few are never read.
class NameChoice {
 public:
  // `memory` may be null.
  NameChoice(std::vector<NameRecord> records, NameContentMemory* memory)
      : records_(std::move(records)), memory_(memory) {
    const auto holds_text = [this](const NameRecord& record) {
      return ContentOf(record) != NameContent::kNone;
    };
    holds_text_ = std::ranges::any_of(records_, holds_text);
    // The first Macintosh English record itself still overwrites.
    const auto last = std::ranges::find_if(records_, [&](const NameRecord& record) {
      return record.language_id == kMacintoshEnglish && record.platform_id == kPlatformMacintosh &&
             holds_text(record);
    });
    overwriting_ = static_cast<std::size_t>(last - records_.begin()) + (last == records_.end() ? 0 : 1);
  }

  bool holds_text() const { return holds_text_; }
  std::string Of(NameId id) const {
    return Choose([this, id](std::size_t i) { return Is(i, id) && Overwrites(i); },
                  [this, id](std::size_t i) { return Is(i, id) && !Overwrites(i); });
  }
  // The plain family is taken for it too, but only where it overwrites.
  std::string TypographicFamily() const {
    return Choose(
        [this](std::size_t i) { return (Is(i, kTypographicFamily) || Is(i, kFamily)) && Overwrites(i); },
        [this](std::size_t i) { return Is(i, kTypographicFamily) && !Overwrites(i); });
  }
  // The first in any language.
  std::string WindowsFullName() const {
    return Choose(
        [](std::size_t) { return false; },
        [this](std::size_t i) { return Is(i, kFullName) && records_[i].platform_id == kPlatformWindows; });
  }
  // One that is not ASCII does not count.
  std::string PostScriptName() const {
    const auto is_name = [this](std::size_t i) {
      return Is(i, kPostScriptName) && ContentOf(records_[i]) == NameContent::kAscii;
    };
    return Choose([&](std::size_t i) { return Overwrites(i) && is_name(i); },
                  [&](std::size_t i) { return !Overwrites(i) && is_name(i); });
  }

 private:
  bool Is(std::size_t i, NameId id) const { return records_[i].name_id == id; }
  bool Overwrites(std::size_t i) const {
    const NameRecord& record = records_[i];
    return i < overwriting_ &&
           (record.encoding_id == 0 || record.language_id == 0 ||
            (record.language_id == kWindowsUsEnglish && record.platform_id == kPlatformWindows));
  }

  NameContent ContentOf(const NameRecord& record) const {
    return memory_ != nullptr ? memory_->ContentOf(record) : quillmark::ContentOf(record);
  }
  std::string TextOf(const NameRecord& record) const {
    if (memory_ != nullptr && memory_->ContentOf(record) == NameContent::kNone) return {};
    return DecodeNameText(record);
  }

  template <typename Replaces, typename Fills>
  std::string Choose(Replaces replaces, Fills fills) const {
    for (std::size_t i = overwriting_; i-- > 0;) {
      if (!replaces(i)) continue;
      if (std::string text = TextOf(records_[i]); !text.empty()) return text;
    }
    for (std::size_t i = 0; i < records_.size(); ++i) {
      if (!fills(i)) continue;
      if (std::string text = TextOf(records_[i]); !text.empty()) return text;
    }
    return {};
  }

  std::vector<NameRecord> records_;
  NameContentMemory* memory_;
  std::size_t overwriting_ = 0;  // records from here on overwrite nothing
  bool holds_text_ = false;
};

// The outputs as one table gives them.
struct FontNames {
  OmString foundry;
  OmString family;
  OmString version;
  OmString post_script_name;
  OmString display_name;
  OmString full_name;
  OmString windows_full_name;
  bool any = false;
};

const std::string& FirstNonEmpty(const std::string& a, const std::string& b) { return a.empty() ? b : a; }

// Nothing without a valid table.
std::optional<FontNames> NamesOf(const SfntData& font, NameContentMemory* memory = nullptr) {
  auto records = ReadNameRecords(font);
  if (!records) return std::nullopt;
  const NameChoice choice(*std::move(records), memory);
  const std::string stated_name = choice.PostScriptName();
  const std::string stated_full_name = choice.Of(kFullName);
  const std::string& full_name = FirstNonEmpty(stated_full_name, stated_name);
  FontNames names;
  names.foundry = FirstNonEmpty(choice.Of(kManufacturer), choice.Of(kCopyright));
  names.family = FirstNonEmpty(choice.TypographicFamily(), choice.Of(kFamily));
  names.version = choice.Of(kVersion);
  names.display_name = FirstNonEmpty(stated_name, stated_full_name);
  names.post_script_name = names.display_name;
  ReplaceIllegalCharsInPostScriptName(names.post_script_name);
  names.full_name = full_name;
  names.windows_full_name = FirstNonEmpty(choice.WindowsFullName(), full_name);
  names.any = choice.holds_text();
  return names;
}

void Write(OmString* output, const OmString& text) {
  if (output != nullptr) *output = text;
}

bool WriteNames(const std::optional<FontNames>& names, const NameOutputs& outputs) {
  if (!names) return false;
  Write(outputs.foundry, names->foundry);
  Write(outputs.family_name, names->family);
  Write(outputs.version, names->version);
  Write(outputs.post_script_name, names->post_script_name);
  if (outputs.display_name != nullptr && outputs.display_name->empty()) {
    *outputs.display_name = names->display_name;
  }
  Write(outputs.full_name, names->full_name);
  Write(outputs.windows_full_name, names->windows_full_name);
  return names->any;
}

thread_local NameMemory* current_memory = nullptr;

}  // namespace

struct NameMemory {
  static constexpr std::size_t kMostFonts = 256;  // of up to some kilobytes each

  std::map<ResourcePlace, std::optional<FontNames>> names;
};

bool getMetaDataFromNamesTable(const SfntData& font, const NameOutputs& outputs) {
  return WriteNames(NamesOf(font), outputs);
}

bool getMetaDataFromNamesTable(const SfntData& font, NameContentMemory& memory, const NameOutputs& outputs) {
  return WriteNames(NamesOf(font, &memory), outputs);
}

bool getMetaDataFromNamesTable(const SfntData& font, const std::optional<ResourcePlace>& place,
                               const NameOutputs& outputs) {
  if (current_memory == nullptr || !place) return getMetaDataFromNamesTable(font, outputs);
  auto& known = current_memory->names;
  auto found = known.find(*place);
  if (found == known.end()) {
    if (known.size() == NameMemory::kMostFonts) known.clear();
    found = known.emplace(*place, NamesOf(font)).first;
  }
  return WriteNames(found->second, outputs);
}

NameMemoryScope::NameMemoryScope()
    : memory_(std::make_unique<NameMemory>()), outer_(std::exchange(current_memory, memory_.get())) {}

NameMemoryScope::~NameMemoryScope() { current_memory = outer_; }

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
