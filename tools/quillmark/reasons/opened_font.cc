#include "reasons/opened_font.h"

namespace quillmark::tool {

FoundMap FindMap(FontFile& file) {
  FoundMap found;
  const auto look_at = [&](const Fork& fork, std::optional<MapFault>& fault) {
    found.map = ResourceMap::Open(fork, file.budget(), &fault.emplace());
    if (found.map) fault.reset();
  };
  if (const auto& resources = file.ResourceFork()) look_at(resources->fork, found.resource_fork_fault);
  if (found.map) return found;
  if (const auto data = file.DataFork()) look_at(*data, found.data_fork_fault);
  found.is_data_fork = found.map.has_value();
  return found;
}

}  // namespace quillmark::tool
