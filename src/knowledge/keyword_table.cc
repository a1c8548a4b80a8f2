#include "knowledge/keyword_table.h"

#include <optional>
#include <utility>

#include "knowledge/table_values.h"
#include "support/resource_location.h"

namespace quillmark {
namespace {

constexpr std::size_t kTextCapacity = 512;

// A number that does not fit 32 bits gives its converted value; what is no number gives nothing.
std::optional<std::int32_t> Constant(CFNumberRef number) {
  std::int32_t constant = 0;
  if (!number) return std::nullopt;
  static_cast<void>(NCFUtils::GetLongFromCFValue(number, constant));
  return constant;
}

// The keys of a component and of a style, made once for all elements.
struct ComponentKeys {
  CFRef<CFStringRef> display = TableKey("display");
  CFRef<CFStringRef> words = TableKey("match-strings");
  CFRef<CFStringRef> constant = TableKey("style-constant");
  CFRef<CFStringRef> modifier = TableKey("is-modifier");
  CFRef<CFStringRef> compounds = TableKey("compounds");
};
struct StyleKeys {
  CFRef<CFStringRef> display = TableKey("display");
  CFRef<CFStringRef> constants = TableKey("components");
  CFRef<CFStringRef> weight = TableKey("isweight");
};

std::optional<SStyleComponent> ReadComponent(CFDictionaryRef element, const ComponentKeys& keys) {
  const CFStringRef display = NCFUtils::GetCFStringFromDict(element, keys.display.get());
  const CFArrayRef words = NCFUtils::GetCFArrayFromDict(element, keys.words.get());
  const auto constant = Constant(NCFUtils::GetCFNumberFromDict(element, keys.constant.get()));
  SStyleComponent component;
  const bool has_modifier = NCFUtils::GetBoolFromDict(element, keys.modifier.get(), component.isModifier);
  if (!display || !words || !constant || !has_modifier) return std::nullopt;
  auto text = Utf8Within(display, kTextCapacity);
  if (!text) return std::nullopt;
  component.display = std::move(*text);
  component.styleConstant = *constant;
  // The one key that may be absent: such a component does not compound.
  static_cast<void>(NCFUtils::GetBoolFromDict(element, keys.compounds.get(), component.compounds));
  for (const CFStringRef word : ElementsOf(words, AsString)) {
    if (auto spelling = Utf8Within(word, kTextCapacity))
      component.matchStrings.push_back(std::move(*spelling));
  }
  return component;
}

std::optional<SBuiltinStyle> ReadStyle(CFDictionaryRef element, const StyleKeys& keys) {
  const CFStringRef display = NCFUtils::GetCFStringFromDict(element, keys.display.get());
  const CFArrayRef constants = NCFUtils::GetCFArrayFromDict(element, keys.constants.get());
  SBuiltinStyle style;
  const bool has_weight = NCFUtils::GetBoolFromDict(element, keys.weight.get(), style.isWeight);
  if (!display || !constants || !has_weight) return std::nullopt;
  auto text = Utf8Within(display, kTextCapacity);
  if (!text) return std::nullopt;
  style.display = std::move(*text);
  for (const CFNumberRef number : ElementsOf(constants, AsNumber)) {
    style.components.push_back(*Constant(number));
  }
  return style;
}

}  // namespace

KeywordTable& KeywordTable::Shared() {
  static auto& table = *new KeywordTable;
  return table;
}

void KeywordTable::Load(CFDictionaryRef root) {
  const CFArrayRef components = NCFUtils::GetCFArrayFromDict(root, TableKey("Components").get());
  const CFArrayRef styles = NCFUtils::GetCFArrayFromDict(root, TableKey("Styles").get());
  if (!components) throw DataRetrieveError("KeywordTable.plist - Components array");
  LoadComponents(components);
  if (!styles) throw DataRetrieveError("KeywordTable.plist - Style array");
  LoadStyles(styles);
}

void KeywordTable::LoadComponents(CFArrayRef elements) {
  components_.clear();
  component_of_word_.clear();
  const ComponentKeys keys;
  for (const CFDictionaryRef element : ElementsOf(elements, AsDictionary)) {
    auto component = ReadComponent(element, keys);
    if (!component) continue;
    for (const std::string& word : component->matchStrings) {
      component_of_word_.try_emplace(word, components_.size());
    }
    // Not cleared above: constants of an earlier load stay known unless this one replaces them.
    compounds_[component->styleConstant] = component->compounds;
    components_.push_back(std::move(*component));
  }
}

void KeywordTable::LoadStyles(CFArrayRef elements) {
  styles_.clear();
  const StyleKeys keys;
  for (const CFDictionaryRef element : ElementsOf(elements, AsDictionary)) {
    if (auto style = ReadStyle(element, keys)) styles_.push_back(std::move(*style));
  }
}

const SStyleComponent* KeywordTable::FindWord(std::string_view word) const {
  const auto found = component_of_word_.find(word);
  return found == component_of_word_.end() ? nullptr : &components_[found->second];
}

bool KeywordTable::Compounds(std::int32_t constant) const {
  const auto found = compounds_.find(constant);
  return found != compounds_.end() && found->second;
}

void OmFontStyleScan::Initialize() {
  // Once a process, behind the lock of the initialization; a load that throws is tried again.
  [[maybe_unused]] static const bool loaded = (OSLoadStyleResources(), true);
}

void OmFontStyleScan::OSLoadStyleResources() {
  const auto list = LoadBundlePropertyList("KeywordTable.plist", kCFPropertyListImmutable);
  if (const CFDictionaryRef root = AsDictionary(list.get())) KeywordTable::Shared().Load(root);
}

}  // namespace quillmark
