#include "api/face_classes.h"

#include "resources/printer_font_name.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {

FaceClasses::Outline FaceClasses::OutlineOf(std::int16_t id) {
  constexpr std::size_t kIds = 0x10000;
  if (outline_of_id_.empty()) outline_of_id_.resize(kIds);
  std::optional<Outline>& known = outline_of_id_[static_cast<std::uint16_t>(id)];
  if (known) return *known;
  const ResourceHandle outline(getHandleOfTypeAndResID(file_, FourCharCode("sfnt"), id));
  const auto place = PlaceOf(outline.get());
  const auto next = static_cast<Outline>(outline_of_place_.size() + 1);
  known = place ? outline_of_place_.try_emplace(*place, next).first->second : 0;
  return *known;
}

const std::vector<FaceClasses::Style>& FaceClasses::StylesOf(Handle fond) {
  const auto place = PlaceOf(fond);
  if (place && place == place_) return styles_;
  place_ = place;
  styles_.clear();
  classes_.clear();
  if (file_ == nullptr) return styles_;
  const FondStyles& family = file_->StylesOf(fond);
  styles_.reserve(family.codes().size());
  for (const std::int16_t code : family.codes()) {
    const auto entries = family.Of(static_cast<std::uint16_t>(code));
    const auto outline = family.OutlineOf(static_cast<std::uint16_t>(code));
    const Question question(OutlineOf(entries.front().id),
                            outline ? std::optional(OutlineOf(*outline)) : std::nullopt,
                            GetStyleIndex(static_cast<unsigned char>(code)));
    const auto face_class = classes_.try_emplace(question, classes_.size()).first->second;
    styles_.push_back({code, entries.front().id, face_class});
  }
  return styles_;
}

}  // namespace quillmark
