#include "api/font_array.h"

#include <iterator>

using quillmark::OmString;
using quillmark::QM_FontSpecifier;

void QM_FontArray::Append(QM_FontArray&& other) {
  if (faces_.empty()) {
    faces_ = std::move(other.faces_);
  } else {
    faces_.insert(faces_.end(), std::move_iterator(other.faces_.begin()),
                  std::move_iterator(other.faces_.end()));
  }
}

void QM_FontArray::RemoveDups() {
  // best_from[i]: the specifier to keep for a group that starts at i. All candidates of a group have its name
  // but for case, so the best later one is simply the first of the lowest style: a minimum that a walk from
  // the end keeps for each group.
  std::vector<std::size_t> best_from(faces_.size());
  std::map<std::string, std::size_t> best_later;  // ordered: no names make it slow
  for (std::size_t i = faces_.size(); i-- > 0;) {
    const QM_FontSpecifier& face = faces_[i];
    OmString group = face.postScriptName;
    group.ToLower();
    const auto later = best_later.find(group.str());
    const bool later_wins = later != best_later.end() && faces_[later->second].style < face.style;
    best_from[i] = later_wins ? later->second : i;
    if (face.firstResourceID > 0 && !later_wins) best_later.insert_or_assign(group.str(), i);
  }

  std::vector<std::size_t> kept;
  bool all_stay = true;
  quillmark::NamesSeen names;
  for (std::size_t i = 0; i < faces_.size(); ++i) {
    const bool is_first = names.FirstFace(faces_[i].postScriptName.str(), i) == i;
    if (is_first) kept.push_back(best_from[i]);
    all_stay = all_stay && is_first && best_from[i] == i;
  }
  if (all_stay) return;  // as in most files: copies would double the memory that the faces take
  Keep(kept);
}

void QM_FontArray::Keep(const std::vector<std::size_t>& order) {
  std::vector<QM_FontSpecifier> faces;
  faces.reserve(order.size());
  for (const std::size_t index : order) faces.push_back(faces_[index]);  // copies share their texts
  faces_ = std::move(faces);
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
