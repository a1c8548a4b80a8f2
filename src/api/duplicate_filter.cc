#include "api/duplicate_filter.h"

#include <algorithm>

namespace quillmark {

bool DuplicateFilter::MayStay(const QM_FontSpecifier& face, const Group** group) {
  const bool starts_group = names_.insert(face.postScriptName.str()).second;
  OmString name = face.postScriptName;
  name.ToLower();
  Group& known = groups_.try_emplace(name.str(), Group{face.style}).first->second;
  *group = &known;
  // A better face takes the place of every best one of a higher style, so that none is higher than its own.
  const bool is_better = known.HasRoomFor(face.firstResourceID, face.style);
  if (is_better) known.worst_style = face.style;
  if (starts_group) known.worst_style = std::max(known.worst_style, std::int32_t{face.style});
  return starts_group || is_better;
}

}  // namespace quillmark
