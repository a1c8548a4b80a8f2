#include "font_fields.h"

#include <algorithm>
#include <cstdint>

#include "platform/byte_reader.h"

namespace quillmark {
namespace {

enum Role {
  kTableCount,
  kTableTag,
  kTableOffset,
  kTableLength,
  kNameCount,
  kNameTexts,
  kNamePlatform,
  kNameEncoding,
  kNameLanguage,
  kNameId,
  kNameLength,
  kNameOffset,
  kKernTable,
  kFaceCount,
  kFaceOffset,
  kForkHeader,
  kMapHeader,
  kTypeCount,
  kTypeCode,
  kTypeResources,
  kTypeOffset,
  kResourceId,
  kResourceName,
  kResourceData,
  kResourceLength,
  kFondTable,
  kFondCount,
  kFondEntry,
  kFondText,
  kSidecarCount,
  kSidecarEntry,
  kSidecarOffset,
  kSidecarLength,
};

constexpr std::size_t kMostOfAKind = 64;  // fields of one list: enough to spoil it anywhere

class Finder {
 public:
  explicit Finder(const std::string& bytes) : bytes_(AsBytes(bytes)) {}

  std::vector<FontField> Find() {
    const std::uint32_t tag = U32At(bytes_, 0).value_or(0);
    if (tag == 0x00051607) {
      Sidecar();
    } else if (tag == FourCharCode("ttcf")) {
      Collection();
    } else if (IsSfnt(tag)) {
      Sfnt(0, 0);
    } else {
      Fork(0);
    }
    std::erase_if(fields_, [this](const FontField& field) {
      return !Slice(bytes_, field.offset, static_cast<std::size_t>(field.width));
    });
    return std::move(fields_);
  }

 private:
  static bool IsSfnt(std::uint32_t tag) {
    return tag == 0x00010000 || tag == FourCharCode("OTTO") || tag == FourCharCode("true");
  }
  void Add(std::size_t offset, int width, Role role) { fields_.push_back({offset, width, role}); }
  std::size_t U16(std::size_t offset) const { return U16At(bytes_, offset).value_or(0); }
  std::size_t U32(std::size_t offset) const { return U32At(bytes_, offset).value_or(0); }

  // Table offsets count from `base`, where the file of the font begins.
  void Sfnt(std::size_t base, std::size_t directory) {
    Add(directory + 4, 2, kTableCount);
    const std::size_t tables = std::min(U16(directory + 4), kMostOfAKind);
    for (std::size_t i = 0; i < tables; ++i) {
      const std::size_t entry = directory + 12 + 16 * i;
      Add(entry, 4, kTableTag);
      Add(entry + 8, 4, kTableOffset);
      Add(entry + 12, 4, kTableLength);
      const std::size_t start = base + U32(entry + 8);
      if (U32(entry) == FourCharCode("name")) NameTable(start);
      if (U32(entry) == FourCharCode("kern")) {
        for (std::size_t at = 0; at < 18; at += 2) Add(start + at, 2, kKernTable);
      }
    }
  }

  void NameTable(std::size_t start) {
    Add(start + 2, 2, kNameCount);
    Add(start + 4, 2, kNameTexts);
    constexpr Role kRoles[] = {kNamePlatform, kNameEncoding, kNameLanguage,
                               kNameId,       kNameLength,   kNameOffset};
    const std::size_t records = std::min(U16(start + 2), kMostOfAKind);
    for (std::size_t i = 0; i < records; ++i) {
      std::size_t at = start + 6 + 12 * i;
      for (const Role role : kRoles) {
        Add(at, 2, role);
        at += 2;
      }
    }
  }

  void Collection() {
    Add(8, 4, kFaceCount);
    const std::size_t faces = std::min(U32(8), kMostOfAKind);
    for (std::size_t i = 0; i < faces; ++i) {
      Add(12 + 4 * i, 4, kFaceOffset);
      Sfnt(0, U32(12 + 4 * i));
    }
  }

  void Fork(std::size_t base) {
    for (std::size_t at = 0; at < 16; at += 4) Add(base + at, 4, kForkHeader);
    const std::size_t data = base + U32(base);
    const std::size_t map = base + U32(base + 4);
    for (const std::size_t at : {22u, 24u, 26u}) Add(map + at, 2, kMapHeader);
    const std::size_t types = map + U16(map + 24);
    Add(types, 2, kTypeCount);
    const std::size_t last_type = std::min(U16(types), kMostOfAKind);
    for (std::size_t i = 0; i <= last_type; ++i) {
      const std::size_t entry = types + 2 + 8 * i;
      Add(entry, 4, kTypeCode);
      Add(entry + 4, 2, kTypeResources);
      Add(entry + 6, 2, kTypeOffset);
      const std::size_t last_resource = std::min(U16(entry + 4), kMostOfAKind);
      for (std::size_t j = 0; j <= last_resource; ++j) {
        const std::size_t reference = types + U16(entry + 6) + 12 * j;
        Add(reference, 2, kResourceId);
        Add(reference + 2, 2, kResourceName);
        Add(reference + 5, 3, kResourceData);
        Resource(U32(entry), data + U32(reference + 4) % (1 << 24));
      }
    }
  }

  void Resource(std::size_t type, std::size_t start) {
    Add(start, 4, kResourceLength);
    if (type == FourCharCode("sfnt")) Sfnt(start + 4, start + 4);
    if (type == FourCharCode("FOND")) Fond(start + 4);
  }

  void Fond(std::size_t start) {
    for (const std::size_t at : {16u, 20u, 24u}) Add(start + at, 4, kFondTable);  // widths, kerning, styles
    Add(start + 52, 2, kFondCount);
    const std::size_t last = std::min(U16(start + 52), kMostOfAKind);
    for (std::size_t i = 0; i < 3 * (last + 1); ++i) Add(start + 54 + 2 * i, 2, kFondEntry);
    const std::size_t kerning = start + U32(start + 20);
    for (const std::size_t at : {0u, 2u, 4u}) Add(kerning + at, 2, kFondCount);
    const std::size_t styles = start + U32(start + 24);
    for (std::size_t at = 10; at < 58; ++at) Add(styles + at, 1, kFondText);
    Add(styles + 58, 2, kFondCount);
    Add(styles + 60, 1, kFondText);
  }

  void Sidecar() {
    Add(24, 2, kSidecarCount);
    const std::size_t entries = std::min(U16(24), kMostOfAKind);
    for (std::size_t i = 0; i < entries; ++i) {
      const std::size_t entry = 26 + 12 * i;
      Add(entry, 4, kSidecarEntry);
      Add(entry + 4, 4, kSidecarOffset);
      Add(entry + 8, 4, kSidecarLength);
      if (U32(entry) == 2) Fork(U32(entry + 4));
    }
  }

  Bytes bytes_;
  std::vector<FontField> fields_;
};

}  // namespace

std::vector<FontField> FontFieldsOf(const std::string& bytes) { return Finder(bytes).Find(); }

}  // namespace quillmark
