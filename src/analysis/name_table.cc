#include "analysis/name_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/text/text_encoding.h"

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

enum class NameContent : std::uint8_t { kNone, kAscii, kOther };  // kNone: empty, or invalid

constexpr std::uint64_t kPasses = 8;  // over the records of a table, to choose every name

// Chooses among the records of one table. Each name comes from the last of its valid records that may
// overwrite earlier ones; when there is none, from the first valid one of the others. Only what the choice
// depends on is decoded: a table may hold 32,767 records of a kilobyte each, of which all but a few are never
// read.
class NameChoice {
 public:
  NameChoice(std::vector<NameRecord> records, Budget* budget)
      : records_(std::move(records)), budget_(budget) {
    ChargeRecords(budget_, kPasses * records_.size());
    const auto holds_text = [this](const NameRecord& record) {
      return ContentOf(record) != NameContent::kNone;
    };
    holds_text_ = std::ranges::any_of(records_, holds_text);
    // Records up to and including the first Macintosh English one overwrite.
    const auto last = std::ranges::find_if(records_, [&](const NameRecord& record) {
      return record.language_id == kMacintoshEnglish && record.platform_id == kPlatformMacintosh &&
             holds_text(record);
    });
    overwriting_end_ = static_cast<std::size_t>(last - records_.begin()) + (last == records_.end() ? 0 : 1);
  }

  bool holds_text() const { return holds_text_; }
  NameFault WhyNoText() const {
    const bool any_bytes =
        std::ranges::any_of(records_, [](const auto& record) { return !record.text.empty(); });
    return {any_bytes ? NameFault::kNoValidText : NameFault::kNoTextInside};
  }
  std::string NameOf(NameId id) const {
    return Choose([this, id](std::size_t i) { return Is(i, id) && Overwrites(i); },
                  [this, id](std::size_t i) { return Is(i, id) && !Overwrites(i); });
  }
  // The plain family serves as well, but only from a record that overwrites.
  std::string TypographicFamily() const {
    return Choose(
        [this](std::size_t i) { return (Is(i, kTypographicFamily) || Is(i, kFamily)) && Overwrites(i); },
        [this](std::size_t i) { return Is(i, kTypographicFamily) && !Overwrites(i); });
  }
  // From the first record in any language.
  std::string WindowsFullName() const {
    return Choose(
        [](std::size_t) { return false; },
        [this](std::size_t i) { return Is(i, kFullName) && records_[i].platform_id == kPlatformWindows; });
  }
  // A name that is not ASCII does not count.
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
    return i < overwriting_end_ &&
           (record.encoding_id == 0 || record.language_id == 0 ||
            (record.language_id == kWindowsUsEnglish && record.platform_id == kPlatformWindows));
  }

  NameContent ContentOf(const NameRecord& record) const {
    if (EncodingOf(record) == NameEncoding::kSingleByte) {  // every byte becomes an ASCII one
      return U8At(record.text, 0).value_or(0) != 0 ? NameContent::kAscii : NameContent::kNone;
    }
    const std::string text = TextOf(record);
    if (text.empty()) return NameContent::kNone;
    return IsAscii(text) ? NameContent::kAscii : NameContent::kOther;
  }
  std::string TextOf(const NameRecord& record) const {
    Charge(budget_, Budget::kDecode + record.text.size() * Budget::kCharacter);
    return DecodeNameText(record);
  }

  template <typename Replaces, typename Fills>
  std::string Choose(Replaces replaces, Fills fills) const {
    for (std::size_t i = overwriting_end_; i-- > 0;) {
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
  Budget* budget_;
  std::size_t overwriting_end_ = 0;  // records from here on overwrite nothing
  bool holds_text_ = false;
};

const std::string& FirstNonEmpty(const std::string& a, const std::string& b) { return a.empty() ? b : a; }

}  // namespace

std::variant<FaceNames, NameFault> getMetaDataFromNamesTable(const SfntData& font) {
  const WorkScope work(font.budget(), Work::kNames);
  auto records = ReadNameRecords(font);
  if (const auto* fault = std::get_if<NameFault>(&records)) return *fault;
  const NameChoice choice(std::get<NameRecords>(std::move(records)), font.budget());
  if (!choice.holds_text()) return choice.WhyNoText();
  const std::string stated_name = choice.PostScriptName();
  const std::string stated_full_name = choice.NameOf(kFullName);
  const std::string& full_name = FirstNonEmpty(stated_full_name, stated_name);
  FaceNames names;
  names.foundry = FirstNonEmpty(choice.NameOf(kManufacturer), choice.NameOf(kCopyright));
  names.family = FirstNonEmpty(choice.TypographicFamily(), choice.NameOf(kFamily));
  names.version = choice.NameOf(kVersion);
  names.display_name = FirstNonEmpty(stated_name, stated_full_name);
  names.post_script_name = names.display_name;
  ReplaceIllegalCharsInPostScriptName(names.post_script_name);
  names.full_name = full_name;
  names.windows_full_name = FirstNonEmpty(choice.WindowsFullName(), full_name);
  return names;
}

std::string getPostScriptNameFromNamesTable(const SfntData& font) {
  const auto names = getMetaDataFromNamesTable(font);
  const auto* found = std::get_if<FaceNames>(&names);
  return found == nullptr ? std::string() : found->post_script_name.str();
}

void ReplaceIllegalCharsInPostScriptName(OmString& name) {
  for (const char illegal : std::string_view(" ()/[]{}")) OmString::ReplaceAll(&name, illegal, '-');
}

}  // namespace quillmark
