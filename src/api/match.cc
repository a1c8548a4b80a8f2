#include "api/match.h"

#include "api/font_array.h"

std::int32_t QM_Match(const QM_FontArray* arrayA, std::uint32_t indexA, const QM_FontArray* arrayB,
                      std::uint32_t indexB, std::uint32_t* matching, std::uint32_t* differing) {
  if (!arrayA || !arrayB || !matching || !differing) return QM_STATUS_FAILED;
  *matching = 0;
  *differing = 0;
  if (indexA >= arrayA->size() || indexB >= arrayB->size()) return QM_STATUS_OUT_OF_RANGE;
  const quillmark::QM_FontSpecifier& a = arrayA->view(indexA);
  const quillmark::QM_FontSpecifier& b = arrayB->view(indexB);
  *matching = a.MatchingAttributes(b);
  *differing = a.DifferingAttributes(b);
  return QM_STATUS_OK;
}
