// Which of the faces that come in order can still stay when duplicates are removed, so that a file that lists
// one family many times over does not fill the memory with faces that go again. What stays is
// QM_FontArray::RemoveDups' to say: it gives the same with and without the faces that are refused here.
// Tests: tests/api/font_array_test.cc.
#ifndef QUILLMARK_API_DUPLICATE_FILTER_H_
#define QUILLMARK_API_DUPLICATE_FILTER_H_

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "api/font_specifier.h"

namespace quillmark {

class DuplicateFilter {
 public:
  // Whether the face is the first of its name, or better than the best so far of any group of that name.
  bool MayStay(const QM_FontSpecifier& face);

 private:
  std::unordered_set<std::string> names_;  // by exact bytes: each starts a group
  // For each name in lower case, the highest style among its groups' best faces.
  std::unordered_map<std::string, std::int32_t> worst_style_;
};

}  // namespace quillmark

#endif
