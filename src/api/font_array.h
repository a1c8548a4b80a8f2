// QM_FontArray: the ordered specifiers of one creation, behind the C interface's opaque pointer.
// The host owns an array from its creation until QM_SpecifierFree. Queries only read it, from any thread.
// Tests: tests/api/queries_test.cc.
#ifndef QUILLMARK_API_FONT_ARRAY_H_
#define QUILLMARK_API_FONT_ARRAY_H_

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "api/font_specifier.h"
#include "quillmark/quillmark.h"

namespace quillmark {

// Maps each PostScript name (exact bytes) to its first face. Faces without resource IDs: RemoveDups keeps
// only the first, so readers skip later ones.
class NamesSeen {
 public:
  // The number of the first face of that name: `face` itself when the name is new.
  std::size_t FirstFace(std::string_view name, std::size_t face) {
    const auto seen = faces_.find(name);
    return seen != faces_.end() ? seen->second : faces_.emplace(name, face).first->second;
  }

 private:
  std::map<std::string, std::size_t, std::less<>> faces_;
};

}  // namespace quillmark

struct QM_FontArray {
 public:
  std::size_t size() const { return faces_.size(); }
  // A copy. An index at or past the end throws std::out_of_range.
  quillmark::QM_FontSpecifier at(std::size_t index) const { return faces_.at(index); }
  // The same without the copy, for queries that look at one field; valid until the array changes.
  const quillmark::QM_FontSpecifier& view(std::size_t index) const { return faces_.at(index); }
  void push_back(quillmark::QM_FontSpecifier specifier) { faces_.push_back(std::move(specifier)); }

  // Takes the specifiers of another array: all of its memory where this one is empty.
  void Append(QM_FontArray&& other);

  // Leaves one specifier for each PostScript name, in the order in which the names (by exact bytes) first
  // occur. Of the specifiers of a name, ignoring ASCII case, from its first occurrence on, that first one
  // stays unless later ones with a resource ID above 0 have a lower style: then the first of the lowest
  // style. Each spelling of a name starts a group of its own, and two such groups may pick the same
  // specifier. Linear in the number of specifiers.
  void RemoveDups();

  // Leaves the specifiers of these numbers, in this order, and no room for more. A number may come twice.
  void Keep(const std::vector<std::size_t>& order);

  // The first specifier of that FOND and style; `outIndex` is left alone when there is none.
  bool FindIndexForFondResourceID(std::int16_t fondID, std::int16_t style, std::uint32_t& outIndex) const;

 private:
  std::vector<quillmark::QM_FontSpecifier> faces_;
};

namespace quillmark {

// What getters have in common: `copy` gets the face when the arguments are good and it holds the attribute.
template <typename Copy>
std::int32_t WithFaceThatHolds(const QM_FontArray* array, std::uint32_t index, std::uint32_t attribute,
                               const void* out, Copy copy) {
  if (!array || !out) return QM_STATUS_FAILED;
  if (index >= array->size()) return QM_STATUS_OUT_OF_RANGE;
  const QM_FontSpecifier& face = array->view(index);
  if (!(face.attributes & attribute)) return QM_STATUS_NOT_HELD;
  copy(face);
  return QM_STATUS_OK;
}

}  // namespace quillmark

#endif
