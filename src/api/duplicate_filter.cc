#include "api/duplicate_filter.h"

#include <algorithm>

namespace quillmark {

bool DuplicateFilter::MayStay(const QM_FontSpecifier& face) {
  const bool starts_group = names_.insert(face.postScriptName.str()).second;
  OmString name = face.postScriptName;
  name.ToLower();
  std::int32_t& worst = worst_style_.try_emplace(name.str(), face.style).first->second;
  // A better face takes the place of every best one of a higher style, so that none is higher than its own.
  const bool is_better = face.firstResourceID > 0 && face.style < worst;
  if (is_better) worst = face.style;
  if (starts_group) worst = std::max(worst, face.style);
  return starts_group || is_better;
}

}  // namespace quillmark
