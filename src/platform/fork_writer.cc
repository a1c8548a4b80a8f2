#include "platform/fork_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/apple_double.h"
#include "platform/atomic_file.h"
#include "platform/extended_attributes.h"
#include "platform/fork_carriers.h"

namespace quillmark {
namespace {

bool InOwnFile(const MapOrigin& origin) {
  return origin.carrier == ForkCarrier::kAppleDouble || origin.carrier == ForkCarrier::kRawFork;
}

bool WriteToAttribute(const MapOrigin& origin, const ResourceMap& map) {
  std::string value;
  return map.Write([&](Bytes bytes) {
    value.append(AsText(bytes));
    return true;
  }) && WriteExtendedAttribute(origin.path, origin.where, value);
}

}  // namespace

bool IsWritable(const MapOrigin& origin) {
  if (origin.carrier == ForkCarrier::kNamedFork) return false;
  const std::string& file = InOwnFile(origin) ? origin.where : origin.path;
  return ::faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) == 0;
}

bool WriteMap(const MapOrigin& origin, const ResourceMap& map) {
  const auto write = [&](const ByteSink& sink) { return map.Write(sink); };
  bool written = false;
  if (!origin.carrier) {
    written = ReplaceFile(origin.path, write);
  } else if (*origin.carrier == ForkCarrier::kRawFork) {
    written = ReplaceFile(origin.where, write);
  } else if (*origin.carrier == ForkCarrier::kAppleDouble) {
    written = ReplaceAppleDoubleEntry(origin.where, kAppleDoubleResourceFork, write);
  } else if (*origin.carrier == ForkCarrier::kExtendedAttribute) {
    written = WriteToAttribute(origin, map);
  }
  ForgetForkLookups();
  return written;
}

}  // namespace quillmark
