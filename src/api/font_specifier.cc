#include "api/font_specifier.h"

#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

struct ComparedString {
  std::uint32_t attribute;
  OmString QM_FontSpecifier::*field;
};
struct ComparedNumber {
  std::uint32_t attribute;
  std::uint32_t QM_FontSpecifier::*field;
};

constexpr ComparedString kStrings[] = {
    {QM_ATTRIBUTE_KIND, &QM_FontSpecifier::kind},
    {QM_ATTRIBUTE_FAMILY, &QM_FontSpecifier::family},
    {QM_ATTRIBUTE_POSTSCRIPT_NAME, &QM_FontSpecifier::postScriptName},
    {QM_ATTRIBUTE_FOUNDRY, &QM_FontSpecifier::foundry},
    {QM_ATTRIBUTE_VERSION, &QM_FontSpecifier::version},
    {QM_ATTRIBUTE_OUTLINE_FILE_NAME, &QM_FontSpecifier::outlineFileName},
};
constexpr ComparedNumber kNumbers[] = {
    {QM_ATTRIBUTE_KERNING_CHECKSUM, &QM_FontSpecifier::kerningChecksum},
    {QM_ATTRIBUTE_OUTLINE_FILE_SIZE, &QM_FontSpecifier::outlineFileSize},
};

}  // namespace

std::uint32_t QM_FontSpecifier::MatchingAttributes(const QM_FontSpecifier& other) const {
  const std::uint32_t held = attributes & other.attributes;
  std::uint32_t matching = 0;
  for (const auto& [attribute, field] : kStrings) {
    if ((held & attribute) && this->*field == other.*field) matching |= attribute;
  }
  for (const auto& [attribute, field] : kNumbers) {
    if ((held & attribute) && this->*field == other.*field && this->*field != 0) matching |= attribute;
  }
  return matching;
}

std::uint32_t QM_FontSpecifier::DifferingAttributes(const QM_FontSpecifier& other) const {
  const std::uint32_t held = attributes & other.attributes;
  std::uint32_t differing = 0;
  for (const auto& [attribute, field] : kStrings) {
    const std::string& mine = (this->*field).str();
    const std::string& theirs = (other.*field).str();
    if ((held & attribute) && !mine.empty() && !theirs.empty() && mine != theirs) differing |= attribute;
  }
  for (const auto& [attribute, field] : kNumbers) {
    const std::uint32_t mine = this->*field;
    const std::uint32_t theirs = other.*field;
    if ((held & attribute) && mine != 0 && theirs != 0 && mine != theirs) differing |= attribute;
  }
  return differing;
}

}  // namespace quillmark
