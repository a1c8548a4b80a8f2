#include "reasons/lost_faces.h"

#include <algorithm>
#include <map>
#include <utility>
#include <variant>
#include <vector>

#include "analysis/font_extension.h"
#include "reasons/fault_words.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

constexpr std::size_t kMostReasons = 3;
constexpr std::size_t kMostNumbers = 12;
constexpr std::size_t kMostStylesNamed = 3;
constexpr std::size_t kMostTypesNamed = 8;

// The first `most` of `count` texts with `between` them, and how many more `things` there are.
template <typename TextOf>
std::string First(std::size_t most, std::size_t count, const std::string& between, const std::string& things,
                  TextOf text_of) {
  std::string text;
  for (std::size_t i = 0; i < std::min(count, most); ++i) text += (i == 0 ? "" : between) + text_of(i);
  if (count <= most) return text;
  return text + (between == "; " ? "; and " : " and ") + std::to_string(count - most) + " more" + things;
}

std::string Numbers(const std::vector<std::uint32_t>& faces) {
  return (faces.size() == 1 ? "face " : "faces ") +
         First(kMostNumbers, faces.size(), ", ", "", [&](std::size_t i) { return std::to_string(faces[i]); });
}

// The reasons of a collection's faces, in the order in which they first occur.
class FaceReasons {
 public:
  void Add(const FaceFault& fault) {
    const auto* duplicate = std::get_if<DuplicateFault>(&fault.why);
    // A face of the same directory as a damaged one is damaged, too.
    const auto first = duplicate == nullptr ? by_face_.end() : by_face_.find(duplicate->face);
    const std::string words = first != by_face_.end() ? first->second : std::visit(WordsOfFace(), fault.why);
    by_face_.emplace(fault.face, words);
    const auto known = std::find_if(reasons_.begin(), reasons_.end(),
                                    [&](const auto& reason) { return reason.first == words; });
    if (known == reasons_.end()) {
      reasons_.push_back({words, {fault.face}});
    } else {
      known->second.push_back(fault.face);
    }
  }

  std::string Text() const {
    const auto text_of = [&](std::size_t i) {
      return Numbers(reasons_[i].second) + ": " + reasons_[i].first;
    };
    return First(kMostReasons, reasons_.size(), "; ", " reasons", text_of);
  }

 private:
  struct WordsOfFace {
    std::string operator()(const NameFault& fault) const { return Words(fault, "the face"); }
    std::string operator()(const auto& fault) const { return Words(fault); }
  };

  std::vector<std::pair<std::string, std::vector<std::uint32_t>>> reasons_;
  std::map<std::uint32_t, std::string> by_face_;
};

std::string Dropped(const CreationResult& result) {
  if (!result.faults_dropped) return {};
  return "; only the first " + std::to_string(CreationResult::kMostFaults) +
         " of them were looked at for this";
}

}  // namespace

Explanation LostCollectionFaces(const CreationResult& result) {
  FaceReasons reasons;
  for (const FaceFault& fault : result.faults) {
    const auto* cut = std::get_if<CollectionFault>(&fault.why);
    const bool is_rest = cut != nullptr && cut->kind == CollectionFault::kCutList;
    // The list of faces ends at this one, so all after it are lost, too; real collections have fewer than
    // the limit.
    const std::uint64_t end =
        is_rest ? std::min<std::uint64_t>(result.claimed_faces, fault.face + CreationResult::kMostFaults)
                : fault.face + std::uint64_t{1};
    for (std::uint64_t face = fault.face; face < end; ++face) {
      reasons.Add({static_cast<std::uint32_t>(face), fault.why});
    }
  }
  return {result.lost_faces == 0 ? Outcome::kFaces : Outcome::kIncomplete, reasons.Text() + Dropped(result),
          result.claimed_faces};
}

Explanation LostStyles(const CreationResult& result) {
  std::vector<const StyleFault*> lost;
  for (const FaceFault& fault : result.faults) {
    const auto* style = std::get_if<StyleFault>(&fault.why);
    // Bitmaps are never read, so a bitmap-only style is not a loss.
    if (style != nullptr && style->kind != StyleFault::kNoPrinterName) lost.push_back(style);
  }
  const std::string text =
      First(kMostStylesNamed, lost.size(), "; ", " styles", [&](std::size_t i) { return Words(*lost[i]); }) +
      Dropped(result);
  return {text.empty() ? Outcome::kFaces : Outcome::kIncomplete, text};
}

Explanation WhyNoFamilyFace(const CreationResult& result) {
  const auto* first = result.faults.empty() ? nullptr : std::get_if<StyleFault>(&result.faults.front().why);
  const bool is_bitmap = first != nullptr && first->kind == StyleFault::kNoPrinterName;
  std::string reason =
      "a font family file with neither a readable outline font nor the name of a printer font";
  if (first != nullptr) {
    reason += " (" + Words(*first);
    if (result.resources->fonds > 1) reason += "; its other FOND resources give no face either";
    reason += ")";
  }
  return {is_bitmap ? Outcome::kOther : Outcome::kDamaged, reason};
}

Explanation WhyNoFonts(const std::string& path, const ListedResources& resources) {
  const bool is_claimed = fontTypeFromExtension(path.c_str()) == kExtensionDfont;
  const Outcome outcome = is_claimed ? Outcome::kDamaged : Outcome::kOther;
  const std::size_t count = resources.types.size();
  if (count == 0) return {outcome, "a resource file without fonts: it holds no resources"};
  const auto type = [&](std::size_t i) { return TypeText(resources.types[i]); };
  const std::string types = First(kMostTypesNamed, count, ", ", " types", type);
  if (resources.outlines > 0) {
    return {Outcome::kDamaged, "a resource file with fonts that no FOND resource names: it holds " + types +
                                   "; quillmark split writes those that are TrueType or OpenType to files"};
  }
  return {outcome, "a resource file without fonts: it holds " + types};
}

}  // namespace quillmark::tool
