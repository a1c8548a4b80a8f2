#include "platform/resource_manager/fork_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include "platform/files/apple_double.h"
#include "platform/files/atomic_file.h"
#include "platform/files/extended_attributes.h"

namespace quillmark {
namespace {

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
  const bool in_own_file =
      origin.carrier == ForkCarrier::kAppleDouble || origin.carrier == ForkCarrier::kRawFork;
  const std::string& file = in_own_file ? origin.where : origin.path;
  return ::faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) == 0;
}

bool WriteMap(const MapOrigin& origin, const ResourceMap& map) {
  const auto write = [&](const ByteSink& sink) { return map.Write(sink); };
  if (!origin.carrier) return ReplaceFile(origin.path, write);
  switch (*origin.carrier) {
    case ForkCarrier::kRawFork:
      return ReplaceFile(origin.where, write);
    case ForkCarrier::kAppleDouble:
      return ReplaceAppleDoubleEntry(origin.where, kAppleDoubleResourceFork, write);
    case ForkCarrier::kExtendedAttribute:
      return WriteToAttribute(origin, map);
    case ForkCarrier::kNamedFork:
      return false;
  }
  return false;
}

}  // namespace quillmark
