// Reads the input as property-list text. What is accepted must be written, and read back as what is written
// the same.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/byte_reader.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/core_foundation/core_foundation.h"

namespace {

using quillmark::Adopt;
using quillmark::CFRef;

void Require(bool holds) {
  if (!holds) std::abort();
}

CFRef<CFPropertyListRef> Parse(CFDataRef data) {
  CFRef<CFStringRef> error;
  auto list = Adopt(
      CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, kCFPropertyListImmutable, error.Receive()));
  Require(static_cast<bool>(list) != static_cast<bool>(error));
  return list;
}

CFRef<CFDataRef> Write(CFPropertyListRef list) {
  return Adopt(CFPropertyListCreateXMLData(kCFAllocatorDefault, list));
}

std::string_view TextOf(CFDataRef data) {
  return quillmark::AsText({CFDataGetBytePtr(data), static_cast<std::size_t>(CFDataGetLength(data))});
}

void RoundTrip(const std::uint8_t* data, std::size_t size) {
  const auto input = Adopt(CFDataCreate(kCFAllocatorDefault, data, static_cast<CFIndex>(size)));
  const auto list = Parse(input.get());
  if (!list) return;
  const auto once = Write(list.get());
  if (!once) {  // only a date that rolled over out of the years that have a text
    Require(TextOf(input.get()).find("<date") != std::string_view::npos);
    return;
  }
  const auto again = Parse(once.get());
  Require(static_cast<bool>(again));
  Require(TextOf(Write(again.get()).get()) == TextOf(once.get()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::int64_t objects = quillmark::cf::Object::LiveCount();
  RoundTrip(data, size);
  Require(quillmark::cf::Object::LiveCount() == objects);
  return 0;
}
