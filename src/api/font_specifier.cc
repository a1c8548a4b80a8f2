#include "api/font_specifier.h"

#include <utility>

namespace quillmark {
namespace {

// The numbers that are compared, which checksums are not.
constexpr std::pair<std::uint32_t, std::uint32_t QM_FontSpecifier::*> kNumbers[] = {
    {QM_ATTRIBUTE_KERNING_CHECKSUM, &QM_FontSpecifier::kerningChecksum},
    {QM_ATTRIBUTE_OUTLINE_FILE_SIZE, &QM_FontSpecifier::outlineFileSize},
};

}  // namespace

std::uint32_t QM_FontSpecifier::MatchingAttributes(const QM_FontSpecifier& other) const {
  const std::uint32_t held = attributes & other.attributes;
  std::uint32_t matching = 0;
  for (const auto& [name, attribute, field] : kStoredTexts) {
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
  for (const auto& [name, attribute, field] : kStoredTexts) {
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
