// QM_Match: compares two faces of any two arrays by the conventions of the exported functions, but is not one
// of them: the export list leaves it out. Tests: tests/api/queries_test.cc.
#ifndef QUILLMARK_API_MATCH_H_
#define QUILLMARK_API_MATCH_H_

#include <cstdint>

#include "quillmark/quillmark.h"

extern "C" {

// `matching` and `differing` receive the attributes on which the faces agree and disagree (font_specifier.h),
// 0 when an index is out of range.
std::int32_t QM_Match(const QM_FontArray* arrayA, std::uint32_t indexA, const QM_FontArray* arrayB,
                      std::uint32_t indexB, std::uint32_t* matching, std::uint32_t* differing);
}

#endif
