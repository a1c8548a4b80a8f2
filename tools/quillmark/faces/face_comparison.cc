#include "faces/face_comparison.h"

#include <optional>
#include <unordered_map>

#include "api/font_array.h"
#include "api/match.h"
#include "faces/face.h"

namespace quillmark::tool {
namespace {

struct TextAttribute {
  const char* name;
  std::uint32_t attribute;
  OmString QM_FontSpecifier::*field;
};
struct NumberAttribute {
  const char* name;
  std::uint32_t attribute;
  std::uint32_t QM_FontSpecifier::*field;
};

constexpr TextAttribute kTexts[] = {
    {"postScriptName", QM_ATTRIBUTE_POSTSCRIPT_NAME, &QM_FontSpecifier::postScriptName},
    {"family", QM_ATTRIBUTE_FAMILY, &QM_FontSpecifier::family},
    {"fullName", QM_ATTRIBUTE_FULL_NAME, &QM_FontSpecifier::fullName},
    {"displayName", QM_ATTRIBUTE_DISPLAY_NAME, &QM_FontSpecifier::displayName},
    {"windowsFullName", QM_ATTRIBUTE_WINDOWS_FULL_NAME, &QM_FontSpecifier::windowsFullName},
    {"foundry", QM_ATTRIBUTE_FOUNDRY, &QM_FontSpecifier::foundry},
    {"kind", QM_ATTRIBUTE_KIND, &QM_FontSpecifier::kind},
    {"version", QM_ATTRIBUTE_VERSION, &QM_FontSpecifier::version},
    {"platform", QM_ATTRIBUTE_PLATFORM, &QM_FontSpecifier::platform},
    {"printerFont", QM_ATTRIBUTE_OUTLINE_FILE_NAME, &QM_FontSpecifier::outlineFileName},
};
constexpr NumberAttribute kNumbers[] = {
    {"checksum", QM_ATTRIBUTE_CHECKSUM, &QM_FontSpecifier::checksum},
    {"legacyChecksum", QM_ATTRIBUTE_LEGACY_CHECKSUM, &QM_FontSpecifier::legacyChecksum},
    {"kerningChecksum", QM_ATTRIBUTE_KERNING_CHECKSUM, &QM_FontSpecifier::kerningChecksum},
    {"outlineFileSize", QM_ATTRIBUTE_OUTLINE_FILE_SIZE, &QM_FontSpecifier::outlineFileSize},
};

constexpr std::uint32_t kStoredLimit = 0x7FFFFFFF;

// Specifiers compare only eight attributes. A specifier that holds the value in one of those lets every
// attribute be compared by the same rules.
QM_FontSpecifier Holding(const OmString& text) {
  QM_FontSpecifier specifier;
  specifier.family = text;
  specifier.attributes = QM_ATTRIBUTE_FAMILY;
  return specifier;
}

QM_FontSpecifier Holding(std::uint32_t number) {
  QM_FontSpecifier specifier;
  specifier.kerningChecksum = number;
  specifier.attributes = QM_ATTRIBUTE_KERNING_CHECKSUM;
  return specifier;
}

// The verdict on two values that both sides hold.
template <typename Value>
Verdict Judge(const Value& a, const Value& b) {
  const QM_FontSpecifier holds_a = Holding(a);
  const QM_FontSpecifier holds_b = Holding(b);
  if (holds_a.DifferingAttributes(holds_b) == 0) return Verdict::kSame;
  return holds_a.MatchingAttributes(holds_b) == 0 ? Verdict::kDiffers : Verdict::kSameButForCase;
}

std::string ShownText(const QM_FontSpecifier& face, const TextAttribute& row) {
  return face.attributes & row.attribute ? (face.*row.field).str() : std::string();
}

std::string ShownNumber(const QM_FontSpecifier& face, const NumberAttribute& row) {
  const std::uint32_t number = face.*row.field;
  if (!(face.attributes & row.attribute) || number == 0) return {};
  return row.attribute == QM_ATTRIBUTE_OUTLINE_FILE_SIZE ? std::to_string(number) : Hex(number);
}

std::string Folded(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

// The first face of each name.
class FacesByName {
 public:
  void Add(const std::string& name, std::uint32_t face) {
    if (!name.empty()) faces_.emplace(name, face);
  }
  std::optional<std::uint32_t> Find(const std::string& name) const {
    const auto found = faces_.find(name);
    return found == faces_.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  std::unordered_map<std::string, std::uint32_t> faces_;
};

}  // namespace

std::vector<FacePair> PairFaces(const QM_FontArray& a, const QM_FontArray& b) {
  FacesByName exact;
  FacesByName folded;
  FacesByName full;
  for (std::uint32_t i = 0; i < b.size(); ++i) {
    const QM_FontSpecifier& face = b.view(i);
    exact.Add(face.postScriptName.str(), i);
    folded.Add(Folded(face.postScriptName.str()), i);
    full.Add(Folded(face.fullName.str()), i);
  }
  std::vector<FacePair> pairs;
  for (std::uint32_t i = 0; i < a.size(); ++i) {
    const QM_FontSpecifier& face = a.view(i);
    auto partner = exact.Find(face.postScriptName.str());
    if (!partner) partner = folded.Find(Folded(face.postScriptName.str()));
    if (!partner) partner = full.Find(Folded(face.fullName.str()));
    if (partner) pairs.push_back({i, *partner});
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
  for (const TextAttribute& row : kTexts) {
    add(row.name, ShownText(face_a, row), ShownText(face_b, row),
        Judge(face_a.*row.field, face_b.*row.field));
  }
  for (const NumberAttribute& row : kNumbers) {
    const std::uint32_t number_a = face_a.*row.field;
    const std::uint32_t number_b = face_b.*row.field;
    const bool capped = stored && number_a == kStoredLimit && number_b == kStoredLimit;
    add(row.name, ShownNumber(face_a, row), ShownNumber(face_b, row),
        capped ? Verdict::kUnknown : Judge(number_a, number_b));
  }
  return compared;
}

bool IsConflict(Verdict verdict) {
  return verdict == Verdict::kDiffers || verdict == Verdict::kSameButForCase;
}

}  // namespace quillmark::tool
