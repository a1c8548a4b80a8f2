#include "knowledge/classification_mappings.h"

#include <string>

#include "knowledge/table_values.h"
#include "support/property_list_file.h"
#include "support/resource_location.h"

namespace quillmark {
namespace {

constexpr char kUnknown[] = "--";
constexpr char kMappings[] = "Mappings";
constexpr char kBuiltinClasses[] = "Default Classifications";
constexpr std::size_t kClassNameCapacity = 1024;

}  // namespace

CClassificationMappings* CClassificationMappings::GetSharedClassificationMappings() {
  static auto* const shared = new CClassificationMappings;
  return shared;
}

OmString CClassificationMappings::GetUnknownClassificationName() { return kUnknown; }

CClassificationMappings::CClassificationMappings() { LoadMappings(); }

void CClassificationMappings::LoadMappings() {
  const auto bytes = LoadBundleFile("DefaultClassifications.plist");
  mappings_ = {};
  pairs_ = bytes ? SortedPairs::Find(bytes, kMappings) : std::nullopt;
  if (pairs_) {
    table_ = Share(pairs_->others());
  } else {
    const auto list = Adopt(NCFUtils::ParsePropertyList(bytes.get(), kCFPropertyListMutableContainers));
    table_ = Share(AsDictionary(list.get()));
    if (table_)
      mappings_ = Share(AsDictionary(CFDictionaryGetValue(table_.get(), TableKey(kMappings).get())));
  }
  // The list and the lookups spell the absent class alike.
  ReplaceDefaultClassification(TableKey("None").get(), TableKey(kUnknown).get());
}

bool CClassificationMappings::empty() const {
  return !pairs_ && (!mappings_ || CFDictionaryGetCount(mappings_.get()) == 0);
}

OmString CClassificationMappings::GetClassNameFromFontFamily(const OmString& family) const {
  const auto name = Adopt(family.GetCFString(kCFStringEncodingUTF8));
  if (!name) return GetUnknownClassificationName();
  const auto key = Adopt(CFStringCreateMutableCopy(kCFAllocatorDefault, 0, name.get()));
  CFStringLowercase(key.get(), nullptr);
  std::optional<std::string> class_name;
  if (pairs_) {
    class_name = pairs_->ValueOf(OmString(key.get()));
  } else if (mappings_) {
    const CFStringRef value = NCFUtils::GetCFStringFromDict(mappings_.get(), key.get());
    if (value) class_name = Utf8Within(value, kClassNameCapacity);
  }
  return class_name ? OmString(*class_name) : GetUnknownClassificationName();
}

std::int32_t CClassificationMappings::ReplaceDefaultClassification(CFStringRef old_name,
                                                                   CFStringRef new_name) {
  if (!table_) return 0;
  const auto key = TableKey(kBuiltinClasses);
  const CFArrayRef classes = NCFUtils::GetCFArrayFromDict(table_.get(), key.get());
  if (!classes) return 0;
  // The list was loaded with mutable containers.
  auto* const replaceable = const_cast<CFMutableArrayRef>(classes);
  std::int32_t replaced = 0;
  const CFIndex count = CFArrayGetCount(classes);
  for (CFIndex i = 0; i < count; ++i) {
    const CFStringRef name = AsString(CFArrayGetValueAtIndex(classes, i));
    if (!name || CFStringCompare(name, old_name, 0) != kCFCompareEqualTo) continue;
    CFArraySetValueAtIndex(replaceable, i, new_name);
    ++replaced;
  }
  return replaced;
}

void CClassificationMappings::GetListOfBuiltinClasses(std::vector<OmString>* classes) const {
  classes->clear();
  if (!table_) return;
  const CFArrayRef names = NCFUtils::GetCFArrayFromDict(table_.get(), TableKey(kBuiltinClasses).get());
  for (const CFStringRef name : ElementsOf(names, AsString)) {
    if (const auto text = Utf8Within(name, kClassNameCapacity)) classes->emplace_back(*text);
  }
}

}  // namespace quillmark
