// Groups the styles of a FOND by everything that the names of their faces can depend on besides the family:
// the outlines they name and the place of their bits in the style mapping table. A hostile FOND lists tens of
// thousands of styles, of which all but a few are alike. Tests: tests/api/creation_test.cc.
#ifndef QUILLMARK_API_FACE_CLASSES_H_
#define QUILLMARK_API_FACE_CLASSES_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <tuple>
#include <vector>

#include "platform/resource_manager.h"

namespace quillmark {

class QuillmarkResourceFile;

class FaceClasses {
 public:
  struct Style {
    std::int16_t code;
    std::int16_t first_resource_id;
    std::size_t face_class;  // below class_count()
  };

  // `file` outlives the object.
  explicit FaceClasses(QuillmarkResourceFile* file) : file_(file) {}

  // The styles of a FOND, ascending as unsigned numbers; the reference holds until the next call.
  const std::vector<Style>& StylesOf(Handle fond);
  std::size_t class_count() const { return classes_.size(); }

 private:
  // An `sfnt` resource: 0 when there is none of that ID, else a number that resources of one place share.
  using Outline = std::uint32_t;
  // Of the first entry; of the first outline entry, if there is one; and the index of the style's bits.
  using Question = std::tuple<Outline, std::optional<Outline>, int>;

  Outline OutlineOf(std::int16_t id);

  QuillmarkResourceFile* const file_;
  std::optional<ResourcePlace> place_;  // of the FOND last asked about
  std::vector<Style> styles_;
  std::map<Question, std::size_t> classes_;
  std::map<ResourcePlace, Outline> outline_of_place_;
  std::vector<std::optional<Outline>> outline_of_id_;
};

}  // namespace quillmark

#endif
