#include "platform/cf_boolean.h"

namespace {

// Never destroyed: a host may hold a constant while it unloads the rest.
CFBooleanRef ProcessLong(bool value) {
  auto* const constant = new CFBooleanObject(value);
  constant->MakeProcessLong();
  return constant;
}

}  // namespace

const CFBooleanRef kCFBooleanTrue = ProcessLong(true);
const CFBooleanRef kCFBooleanFalse = ProcessLong(false);

CFTypeID CFBooleanGetTypeID() { return static_cast<CFTypeID>(quillmark::cf::Type::kBoolean); }

Boolean CFBooleanGetValue(CFBooleanRef boolean) { return boolean->value; }
