// Owner of one reference to a CoreFoundation-shaped object; releases it on every path.
//   CFRef<CFStringRef> s = Adopt(CFStringCreateWithCString(nullptr, "x", kCFStringEncodingUTF8));
// Adopt takes what a Create or Copy function returned; Share retains what a Get function returned.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_REF_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_REF_H_

#include <utility>

#include "platform/core_foundation/core_foundation.h"

namespace quillmark {

template <typename Ref>
class CFRef {
 public:
  CFRef() = default;
  CFRef(const CFRef& other) : ref_(other.ref_) {
    if (ref_) CFRetain(ref_);
  }
  CFRef(CFRef&& other) noexcept : ref_(std::exchange(other.ref_, nullptr)) {}
  CFRef& operator=(CFRef other) noexcept {
    std::swap(ref_, other.ref_);
    return *this;
  }
  ~CFRef() {
    if (ref_) CFRelease(ref_);
  }

  Ref get() const { return ref_; }
  explicit operator bool() const { return ref_ != nullptr; }

  // Gives up ownership: the caller must release the result.
  [[nodiscard]] Ref Yield() { return std::exchange(ref_, nullptr); }

  // For functions that hand a new reference out through a pointer; any held one is released first.
  Ref* Receive() {
    *this = CFRef();
    return &ref_;
  }

 private:
  template <typename R>
  friend CFRef<R> Adopt(R ref);

  Ref ref_ = nullptr;
};

template <typename Ref>
CFRef<Ref> Adopt(Ref ref) {
  CFRef<Ref> owner;
  owner.ref_ = ref;
  return owner;
}

template <typename Ref>
CFRef<Ref> Share(Ref ref) {
  if (ref) CFRetain(ref);
  return Adopt(ref);
}

}  // namespace quillmark

#endif
