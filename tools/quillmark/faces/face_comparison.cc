#include "faces/face_comparison.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "faces/attributes.h"
#include "faces/stored_text.h"
#include "platform/text/ascii_case.h"

namespace quillmark::tool {
namespace {

std::string Shown(const QM_FontSpecifier& face, const TextAttribute& row) {
  return face.attributes & row.attribute ? (face.*row.in_array).str() : std::string();
}

std::string Shown(const QM_FontSpecifier& face, const NumberAttribute& row) {
  const std::uint32_t number = face.*row.in_array;
  if (!(face.attributes & row.attribute) || number == 0) return {};
  return row.is_hexadecimal ? Hex(number) : std::to_string(number);
}

// The names by which faces are paired, the best first.
std::array<std::string, 3> NamesOf(const QM_FontSpecifier& face) {
  const auto folded = [](std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), ToLowerAscii);
    return text;
  };
  const std::string& name = face.postScriptName.str();
  return {name, folded(name), folded(face.fullName.str())};
}

}  // namespace

std::vector<FacePair> PairFaces(const QM_FontArray& a, const QM_FontArray& b) {
  std::array<std::map<std::string, std::uint32_t>, 3> first_of_name;
  for (std::uint32_t i = 0; i < b.size(); ++i) {
    const auto names = NamesOf(b.view(i));
    for (std::size_t n = 0; n < names.size(); ++n) first_of_name[n].emplace(names[n], i);
  }
  std::vector<FacePair> pairs;
  for (std::uint32_t i = 0; i < a.size(); ++i) {
    const auto names = NamesOf(a.view(i));
    for (std::size_t n = 0; n < names.size(); ++n) {
      const auto partner = first_of_name[n].find(names[n]);
      if (names[n].empty() || partner == first_of_name[n].end()) continue;
      pairs.push_back({i, partner->second});
      break;
    }
  }
  return pairs;
}

std::vector<ComparedAttribute> CompareFaces(const QM_FontArray& a, const QM_FontArray& b, FacePair pair,
                                            bool stored) {
  const QM_FontSpecifier& face_a = a.view(pair.a);
  const QM_FontSpecifier& face_b = b.view(pair.b);
  std::vector<ComparedAttribute> compared;
  const auto add = [&compared](const char* name, std::string value_a, std::string value_b, Verdict of_both) {
    if (value_a.empty() && value_b.empty()) return;
    const Verdict verdict = value_b.empty() ? Verdict::kOnlyA : value_a.empty() ? Verdict::kOnlyB : of_both;
    compared.push_back({name, verdict, std::move(value_a), std::move(value_b)});
  };
  for (const TextAttribute& row : kTextAttributes) {
    const OmString& text_a = face_a.*row.in_array;
    const OmString& text_b = face_b.*row.in_array;
    add(row.name, Shown(face_a, row), Shown(face_b, row),
        text_a.str() == text_b.str() ? Verdict::kSame
        : text_a == text_b           ? Verdict::kSameButForCase
                                     : Verdict::kDiffers);
  }
  for (const NumberAttribute& row : kNumberAttributes) {
    const std::uint32_t number_a = face_a.*row.in_array;
    const std::uint32_t number_b = face_b.*row.in_array;
    add(row.name, Shown(face_a, row), Shown(face_b, row),
        number_a != number_b                   ? Verdict::kDiffers
        : stored && number_a == kLargestStored ? Verdict::kUnknown
                                               : Verdict::kSame);
  }
  return compared;
}

bool IsConflict(Verdict verdict) {
  return verdict == Verdict::kDiffers || verdict == Verdict::kSameButForCase;
}

}  // namespace quillmark::tool
