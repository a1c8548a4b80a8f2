// QM_FontArray: the ordered specifiers of one creation, behind the C interface's opaque pointer.
// The host owns an array from its creation until QM_SpecifierFree. Queries only read it, from any thread.
// Tests: tests/api/font_array_test.cc.
#ifndef QUILLMARK_API_FONT_ARRAY_H_
#define QUILLMARK_API_FONT_ARRAY_H_

#include <cstdint>
#include <vector>

#include "api/font_specifier.h"
#include "quillmark/quillmark.h"

struct QM_FontArray {
 public:
  std::size_t size() const { return faces_.size(); }
  // A copy. An index at or past the end throws std::out_of_range.
  quillmark::QM_FontSpecifier at(std::size_t index) const { return faces_.at(index); }
  // The same without the copy, for queries that look at one field; valid until the array changes.
  const quillmark::QM_FontSpecifier& view(std::size_t index) const { return faces_.at(index); }
  void push_back(quillmark::QM_FontSpecifier specifier) { faces_.push_back(std::move(specifier)); }

  // Leaves one specifier for each PostScript name, in the order in which the names (by exact bytes) first
  // occur. Of the specifiers of a name, ignoring ASCII case, from its first occurrence on, that first one
  // stays unless later ones with a resource ID above 0 have a lower style: then the first of the lowest
  // style. Each spelling of a name starts a group of its own, and two such groups may pick the same
  // specifier. Linear in the number of specifiers.
  void RemoveDups();

  // The first specifier of that FOND and style; `outIndex` is left alone when there is none.
  bool FindIndexForFondResourceID(std::int16_t fondID, std::int16_t style, std::uint32_t& outIndex) const;

 private:
  std::vector<quillmark::QM_FontSpecifier> faces_;
};

#endif
