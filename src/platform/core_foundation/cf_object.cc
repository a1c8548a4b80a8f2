#include "platform/core_foundation/cf_object.h"

#include "platform/core_foundation/core_foundation.h"

namespace quillmark::cf {
namespace {

std::atomic<std::int64_t> live_objects{0};

const Object* From(CFTypeRef reference) { return static_cast<const Object*>(reference); }

}  // namespace

void Object::CountOne() { live_objects.fetch_add(1, std::memory_order_relaxed); }

void Object::UncountOne() { live_objects.fetch_sub(1, std::memory_order_relaxed); }

void Object::Retain() const { references_.fetch_add(1, std::memory_order_relaxed); }

void Object::Release() const {
  if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

void Object::MakeProcessLong() { UncountOne(); }

std::int64_t Object::LiveCount() { return live_objects.load(std::memory_order_relaxed); }

}  // namespace quillmark::cf

CFTypeRef CFRetain(CFTypeRef object) {
  quillmark::cf::From(object)->Retain();
  return object;
}

void CFRelease(CFTypeRef object) { quillmark::cf::From(object)->Release(); }

CFTypeID CFGetTypeID(CFTypeRef object) { return static_cast<CFTypeID>(quillmark::cf::From(object)->type()); }
