// What the three knowledge tables share in reading their property lists: keys, elements of an expected type,
// and texts that must fit a stated size.
#ifndef QUILLMARK_KNOWLEDGE_TABLE_VALUES_H_
#define QUILLMARK_KNOWLEDGE_TABLE_VALUES_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/core_foundation/cf_ref.h"
#include "support/property_list_values.h"

namespace quillmark {

CFRef<CFStringRef> TableKey(const char* ascii);

// The elements that `as_type`, such as AsString, takes; others are passed over. None for a null array.
template <typename Ref>
std::vector<Ref> ElementsOf(CFArrayRef array, Ref (*as_type)(CFTypeRef)) {
  std::vector<Ref> elements;
  for (CFIndex i = 0; array && i < CFArrayGetCount(array); ++i) {
    if (const Ref element = as_type(CFArrayGetValueAtIndex(array, i))) elements.push_back(element);
  }
  return elements;
}

// The string in UTF-8 when that and a NUL fit `capacity` bytes.
std::optional<std::string> Utf8Within(CFStringRef string, std::size_t capacity);

}  // namespace quillmark

#endif
