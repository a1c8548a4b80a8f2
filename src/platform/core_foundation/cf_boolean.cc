#include "platform/core_foundation/cf_boolean.h"

namespace {

// There from the moment the library is loaded, and never destroyed: a host may call at any time. The first
// reference to each is its own, so that no release destroys it.
constexpr CFBooleanObject kTrue(true);
constexpr CFBooleanObject kFalse(false);

}  // namespace

constinit const CFBooleanRef kCFBooleanTrue = &kTrue;
constinit const CFBooleanRef kCFBooleanFalse = &kFalse;

CFTypeID CFBooleanGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kBoolean); }

Boolean CFBooleanGetValue(CFBooleanRef boolean) { return boolean->value; }
