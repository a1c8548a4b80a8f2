#include "knowledge/foundry_name_table.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "knowledge/table_values.h"
#include "platform/byte_reader.h"
#include "support/resource_location.h"

namespace quillmark {
namespace {

// The code's four characters, the most significant byte first; a zero byte ends the text.
std::string CreatorCodeText(std::uint32_t code) {
  const std::uint32_t stored = emdBigToHostU32(code);  // the swap is its own inverse
  std::array<char, sizeof stored + 1> text{};
  std::memcpy(text.data(), &stored, sizeof stored);
  return text.data();
}

}  // namespace

CFoundryNameTable* CFoundryNameTable::GetSharedFoundryNameTable() {
  static auto* const shared = new CFoundryNameTable;
  return shared;
}

CFoundryNameTable::CFoundryNameTable() { LoadTable(); }

void CFoundryNameTable::LoadTable() {
  entries_.clear();
  patterns_ = FoundryPatternIndex();
  const auto list = LoadBundlePropertyList("FoundryNameTable.plist", kCFPropertyListImmutable);
  const auto name_key = TableKey("FoundryName");
  const auto codes_key = TableKey("CreatorCode");
  const auto pattern_key = TableKey("Pattern");
  std::vector<FoundryPatternIndex::Pattern> patterns;
  for (const CFDictionaryRef element : ElementsOf(AsArray(list.get()), AsDictionary)) {
    Entry entry;
    const CFStringRef name = NCFUtils::GetCFStringFromDict(element, name_key.get());
    if (name) entry.name = OmString(name).str();
    const CFArrayRef codes = NCFUtils::GetCFArrayFromDict(element, codes_key.get());
    for (const CFStringRef code : ElementsOf(codes, AsString)) {
      entry.creator_codes.push_back(OmString(code).str());
    }
    // A pattern without a name is ignored.
    const CFStringRef pattern = NCFUtils::GetCFStringFromDict(element, pattern_key.get());
    if (pattern && name) {
      std::string text = OmString(pattern).str();
      entry.is_default = text.empty();
      if (!entry.is_default) {
        patterns.push_back({std::move(text), static_cast<std::uint32_t>(entries_.size())});
      }
    }
    entries_.push_back(std::move(entry));
  }
  patterns_ = FoundryPatternIndex(std::move(patterns));
}

bool CFoundryNameTable::IsQuestionableCreatorCode(std::uint32_t creator_code) {
  constexpr std::array kQuestionable = {FourCharCode("ACp1"), FourCharCode("ACP1"), FourCharCode("ACSC"),
                                        FourCharCode("KSet"), FourCharCode("KSew")};
  return std::ranges::find(kQuestionable, creator_code) != kQuestionable.end();
}

bool CFoundryNameTable::IsKnownCreatorCode(std::uint32_t creator_code, OmString* foundry) const {
  const std::string code = CreatorCodeText(creator_code);
  if (code.empty()) return false;  // a code whose first byte is zero, even if a list holds an empty one
  bool found = false;
  for (const Entry& entry : entries_) {
    // Ends the walk at a match too; after a match with an empty name a later entry can still give one.
    if (!foundry->empty()) break;
    if (!entry.name) continue;
    const bool listed = std::ranges::any_of(entry.creator_codes, [&](const std::string& listed_code) {
      return OmString::CompareNoCase(listed_code, code) == 0;
    });
    if (!listed) continue;
    *foundry = *entry.name;
    found = true;
  }
  return found;
}

bool CFoundryNameTable::ContainsKnownFoundryName(const OmString& text, OmString* foundry,
                                                 OmString* default_foundry) const {
  OmString lowered(text.str());
  lowered.ToLower();
  const std::optional<std::uint32_t> match = patterns_.SmallestRankIn(lowered.str());
  if (default_foundry) {
    // The last default entry that a walk to the match, or to the end, passes.
    for (std::size_t i = match.value_or(static_cast<std::uint32_t>(entries_.size())); i-- > 0;) {
      if (!entries_[i].is_default) continue;
      *default_foundry = *entries_[i].name;
      break;
    }
  }
  if (!match) return false;
  if (foundry) *foundry = *entries_[*match].name;
  return true;
}

OmString CFoundryNameTable::GetCanonicalFoundryName(std::uint32_t creator_code, const OmString& text) const {
  OmString foundry;
  if (IsKnownCreatorCode(creator_code, &foundry) || !foundry.empty()) return foundry;
  OmString default_foundry;
  if (ContainsKnownFoundryName(text, &foundry, &default_foundry)) return foundry;
  return default_foundry.empty() ? OmString("--") : default_foundry;
}

}  // namespace quillmark
