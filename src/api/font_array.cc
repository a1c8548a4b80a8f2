#include "api/font_array.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

using quillmark::OmString;
using quillmark::QM_FontSpecifier;

void QM_FontArray::RemoveDups() {
  // For each specifier the one that stands for its group if the group starts there. Whichever candidate is
  // best so far, its name is the group's but for case, so the scan of the later specifiers comes down to
  // their first lowest style: a minimum that a walk from the end carries along for each group.
  std::vector<std::size_t> best_from(faces_.size());
  std::unordered_map<std::string, std::size_t> best_later;
  for (std::size_t i = faces_.size(); i-- > 0;) {
    const QM_FontSpecifier& face = faces_[i];
    OmString group = face.postScriptName;
    group.ToLower();
    const auto later = best_later.find(group.str());
    const bool later_wins = later != best_later.end() && faces_[later->second].style < face.style;
    best_from[i] = later_wins ? later->second : i;
    if (face.firstResourceID > 0 && !later_wins) best_later.insert_or_assign(group.str(), i);
  }

  std::vector<QM_FontSpecifier> kept;
  std::unordered_set<std::string_view> seen;
  for (std::size_t i = 0; i < faces_.size(); ++i) {
    if (seen.insert(faces_[i].postScriptName.str()).second) kept.push_back(faces_[best_from[i]]);
  }
  faces_ = std::move(kept);
}

bool QM_FontArray::FindIndexForFondResourceID(std::int16_t fondID, std::int16_t style,
                                              std::uint32_t& outIndex) const {
  for (std::size_t i = 0; i < faces_.size(); ++i) {
    if (faces_[i].fondResourceID == fondID && faces_[i].style == style) {
      outIndex = static_cast<std::uint32_t>(i);
      return true;
    }
  }
  return false;
}
