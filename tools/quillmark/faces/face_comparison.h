// Compares two arrays face by face: which faces share a name, and which attributes of a pair agree or
// conflict.
#ifndef QUILLMARK_TOOL_FACES_FACE_COMPARISON_H_
#define QUILLMARK_TOOL_FACES_FACE_COMPARISON_H_

#include <cstdint>
#include <string>
#include <vector>

#include "quillmark/quillmark.h"

namespace quillmark::tool {

struct FacePair {
  std::uint32_t a = 0, b = 0;  // indexes in the two arrays
};

// At most one pair for each face of `a`, in their order: with the first face of `b` of the same PostScript
// name, else of one that differs in ASCII case only, else of a full name that is the same or differs in case
// only.
std::vector<FacePair> PairFaces(const QM_FontArray& a, const QM_FontArray& b);

enum class Verdict {
  kSame,
  kSameButForCase,
  kDiffers,
  kOnlyA,  // only one side holds a value: neither same nor different
  kOnlyB,
  kUnknown,  // a stored number at its limit may stand for any larger one
};

struct ComparedAttribute {
  const char* name = nullptr;  // as the faces' JSON has it
  Verdict verdict = Verdict::kUnknown;
  std::string value_a, value_b;  // empty when the side holds none
};

// The attributes that at least one face holds, each with its Verdict. `stored`: the numbers are those of
// stored forms, where one above 0x7FFFFFFF reads as 0x7FFFFFFF.
std::vector<ComparedAttribute> CompareFaces(const QM_FontArray& a, const QM_FontArray& b, FacePair pair,
                                            bool stored);

// Whether a verdict means that two faces conflict.
bool IsConflict(Verdict verdict);

}  // namespace quillmark::tool

#endif
