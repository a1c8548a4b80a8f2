// Brings a list of resource IDs into the form that all functions return: distinct and ascending.
#ifndef QUILLMARK_RESOURCES_SORTED_IDS_H_
#define QUILLMARK_RESOURCES_SORTED_IDS_H_

#include <algorithm>
#include <cstdint>
#include <vector>

namespace quillmark {

inline std::vector<std::int16_t> SortedIds(std::vector<std::int16_t> ids) {
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

}  // namespace quillmark

#endif
