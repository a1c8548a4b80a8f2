// The dictionary object behind CFDictionaryRef: objects under string keys, in the order of the keys' UTF-16
// code units, which is the order that property-list text wants. A tree, not a hash table; keys that come
// in order cost one comparison each. Tests: tests/platform/core_foundation_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_DICTIONARY_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_DICTIONARY_H_

#include <map>
#include <string>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/core_foundation/cf_string.h"
#include "platform/core_foundation/core_foundation.h"

struct CFDictionaryObject final : quillmark::cf::Object {
  CFDictionaryObject() : Object(quillmark::cf::Type::kDictionary) {}

  using Key = quillmark::CFRef<CFStringRef>;
  struct ByCodeUnits {
    using is_transparent = void;
    static const std::u16string& Units(const Key& key) { return key.get()->units(); }
    static const std::u16string& Units(CFStringRef key) { return key->units(); }
    template <typename A, typename B>
    bool operator()(const A& a, const B& b) const {
      return Units(a) < Units(b);
    }
  };

  // Gives `key` the value, in place of any it has.
  void Set(Key key, quillmark::CFRef<CFTypeRef> value) {
    entries.insert_or_assign(entries.end(), std::move(key), std::move(value));
  }

  std::map<Key, quillmark::CFRef<CFTypeRef>, ByCodeUnits> entries;
};

#endif
