// Which of the faces that come in order can still stay when duplicates are removed, so that a file that lists
// one family many times over does not fill the memory with faces that go again. What stays is
// QM_FontArray::RemoveDups' to say: it gives the same with and without the faces that are refused here.
// Tests: tests/api/font_array_test.cc.
#ifndef QUILLMARK_API_DUPLICATE_FILTER_H_
#define QUILLMARK_API_DUPLICATE_FILTER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "api/font_specifier.h"

namespace quillmark {

class DuplicateFilter {
 public:
  // The faces of one name, ignoring case.
  struct Group {
    std::int32_t worst_style;  // the highest style among the best faces of its spellings

    // Whether one more face, of a spelling that came before, may stay.
    bool HasRoomFor(std::int32_t first_resource_id, std::int32_t style) const {
      return first_resource_id > 0 && style < worst_style;
    }
  };

  // Whether the face is the first of its name, or better than the best so far of any group of that name.
  // *group is the face's own, and lives as long as the filter.
  bool MayStay(const QM_FontSpecifier& face, const Group** group);
  // How many names came so far. While it stays the same, a face that was asked about and whose like comes
  // again is refused.
  std::size_t name_count() const { return names_.size(); }

 private:
  std::unordered_set<std::string> names_;          // by exact bytes: each starts a group
  std::unordered_map<std::string, Group> groups_;  // by name in lower case
};

}  // namespace quillmark

#endif
