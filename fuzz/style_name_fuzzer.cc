// Two names, separated by a line feed, through the style scanner and matcher over the shipped keyword table.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "knowledge/font_style_scan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using quillmark::OmFontStyleScan;
  OmFontStyleScan::Initialize();
  const std::uint8_t* const split = std::find(data, data + size, '\n');
  const std::string primary(data, split);
  const std::string secondary(split == data + size ? split : split + 1, data + size);

  // A word takes a byte of a name at least; a marker of the primary name adds two, and so do the few rules.
  constexpr std::size_t kAddedByRules = 16;
  const auto components = OmFontStyleScan::ScanFontForStyleComponents(primary, secondary);
  if (components.size() > std::max(primary.size(), secondary.size()) + kAddedByRules) std::abort();

  std::vector<quillmark::SBuiltinStyle> of_names;
  std::vector<quillmark::SBuiltinStyle> of_components;
  const std::int32_t count = OmFontStyleScan::ScanFontForBuiltinStyles(primary, secondary, of_names);
  OmFontStyleScan::FindBuiltinMatchesForStyleComponents(components, of_components);
  if (count < 0 || static_cast<std::size_t>(count) != of_names.size()) std::abort();
  if (of_names.size() != of_components.size()) std::abort();
  if (components.empty() && count != 0) std::abort();
  for (std::size_t i = 0; i < of_names.size(); ++i) {
    if (of_names[i].display != of_components[i].display) std::abort();
    const auto& constants = of_names[i].components;
    // Every style found has something in common with the font.
    if (std::none_of(components.begin(), components.end(), [&](const quillmark::SStyleComponent& component) {
          return std::find(constants.begin(), constants.end(), component.styleConstant) != constants.end();
        })) {
      std::abort();
    }
  }
  return 0;
}
