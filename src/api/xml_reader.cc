// QM_CreateSpecifierFromXML: reads the XML form back by searching for its tags; it is no XML parser and must
// not become one. A tag is searched from the start of a face's block to the end of the whole text, so a block
// that lacks it takes the value of a later one. Overlapping and shared values are charged to a budget;
// reading ends when it is spent. Tests: tests/api/xml_test.cc; fuzz/xml_fuzzer.cc.
#include "api/xml_reader.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "api/stored_values.h"
#include "platform/budget.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

// Finds one word at or after positions that never decrease. It remembers the last find, so that all searches
// together walk the text once, however many positions lie before one find.
class ForwardSearch {
 public:
  ForwardSearch(std::string_view text, std::string word) : text_(text), word_(std::move(word)) {}

  // kNone when there is none.
  std::size_t From(std::size_t position) {
    if (!searched_ || (found_ != kNone && found_ < position)) found_ = text_.find(word_, position);
    searched_ = true;
    return found_;
  }
  std::size_t word_length() const { return word_.size(); }

 private:
  std::string_view text_;
  std::string word_;
  bool searched_ = false;
  std::size_t found_ = kNone;
};

// The values of one tag, for block after block.
class TagValues {
 public:
  TagValues(std::string_view text, const std::string& tag)
      : text_(text), opening_(text, "<" + tag + ">"), closing_(text, "</" + tag + ">") {}

  // The text between the first opening tag at or after `block` and the first closing tag behind it.
  std::optional<std::string_view> ExtractTagValue(std::size_t block) {
    const std::size_t opening = opening_.From(block);
    if (opening == kNone) return std::nullopt;
    const std::size_t start = opening + opening_.word_length();
    const std::size_t end = closing_.From(start);
    if (end == kNone) return std::nullopt;
    return text_.substr(start, end - start);
  }

 private:
  std::string_view text_;
  ForwardSearch opening_;
  ForwardSearch closing_;
};

class TextTag {
 public:
  TextTag(std::string_view text, const char* tag, std::uint32_t attribute, OmString QM_FontSpecifier::*field)
      : values_(text, tag), attribute_(attribute), field_(field) {}

  void Read(std::size_t block, QM_FontSpecifier& face, Budget& budget) {
    const auto value = values_.ExtractTagValue(block);
    if (!value) return;
    budget.Charge(value->size() * Budget::kKeptByte);
    face.*field_ = std::string(*value);
    face.attributes |= attribute_;
  }

 private:
  TagValues values_;
  std::uint32_t attribute_;
  OmString QM_FontSpecifier::*field_;
};

class NumberTag {
 public:
  NumberTag(std::string_view text, const char* tag, int base, std::uint32_t attribute,
            std::uint32_t QM_FontSpecifier::*field)
      : values_(text, tag), base_(base), attribute_(attribute), field_(field) {}

  void Read(std::size_t block, QM_FontSpecifier& face) {
    const auto value = values_.ExtractTagValue(block);
    if (!value) return;
    // A number ends at the closing tag's "<" at the latest. A long one that many blocks share is converted
    // once.
    if (value->data() != last_value_) last_number_ = ParseLong(value->data(), base_);
    last_value_ = value->data();
    face.*field_ = last_number_;
    face.attributes |= attribute_;
  }

 private:
  TagValues values_;
  int base_;
  std::uint32_t attribute_;
  std::uint32_t QM_FontSpecifier::*field_;
  const char* last_value_ = nullptr;
  std::uint32_t last_number_ = 0;
};

class XmlReader {
 public:
  explicit XmlReader(std::string_view text)
      : budget_(text.size()),
        block_start_(text, "<FontData>"),
        block_end_(text, "</FontData>"),
        name_(text, "PostScriptName"),
        texts_{{text, "FontKind", QM_ATTRIBUTE_KIND, &QM_FontSpecifier::kind},
               {text, "Family", QM_ATTRIBUTE_FAMILY, &QM_FontSpecifier::family},
               {text, "PostScriptName", QM_ATTRIBUTE_POSTSCRIPT_NAME, &QM_FontSpecifier::postScriptName},
               {text, "Foundry", QM_ATTRIBUTE_FOUNDRY, &QM_FontSpecifier::foundry},
               {text, "Version", QM_ATTRIBUTE_VERSION, &QM_FontSpecifier::version},
               {text, "OutlineFileName", QM_ATTRIBUTE_OUTLINE_FILE_NAME, &QM_FontSpecifier::outlineFileName}},
        numbers_{
            {text, "KerningChecksum", 16, QM_ATTRIBUTE_KERNING_CHECKSUM, &QM_FontSpecifier::kerningChecksum},
            {text, "Checksum", 16, QM_ATTRIBUTE_CHECKSUM, &QM_FontSpecifier::checksum},
            {text, "OutlineFileSize", 10, QM_ATTRIBUTE_OUTLINE_FILE_SIZE,
             &QM_FontSpecifier::outlineFileSize}} {}

  // A last block without its end is read too, and not counted as whole. The block that spends the budget
  // gives no face and is the last.
  XmlReading ReadFaces(QM_FontArray& faces) {
    XmlReading reading;
    try {
      std::size_t position = 0;
      for (std::size_t block; (block = block_start_.From(position)) != kNone;) {
        AppendFace(block, faces);
        position = block_end_.From(block);
        if (position == kNone) break;
        reading.any_whole = true;
      }
    } catch (const BudgetSpent&) {
      reading.is_cut = true;
    }
    return reading;
  }

 private:
  // A face whose name is that of an earlier one is passed over: without resource IDs the removal of
  // duplicates keeps the first of each name, and so no block of a name that is known costs memory.
  void AppendFace(std::size_t block, QM_FontArray& faces) {
    const std::string_view name = name_.ExtractTagValue(block).value_or("");
    if (name.data() == last_name_) return;
    last_name_ = name.data();
    budget_.Charge(Budget::kInsertion);
    budget_.ChargeBytes(name.size());
    if (!seen_.insert(name).second) return;
    budget_.Charge(Budget::kFace);
    QM_FontSpecifier face;
    for (TextTag& tag : texts_) tag.Read(block, face, budget_);
    for (NumberTag& tag : numbers_) tag.Read(block, face);
    face.style = 0;
    face.firstResourceID = 0;
    face.fondResourceID = 0;
    faces.push_back(std::move(face));
  }

  Budget budget_;
  ForwardSearch block_start_;
  ForwardSearch block_end_;
  TagValues name_;
  std::set<std::string_view> seen_;  // no hash table, so that no choice of names makes reading slow
  const char* last_name_ = nullptr;  // a shared name is looked up once
  TextTag texts_[6];
  NumberTag numbers_[3];
};

}  // namespace

XmlReading ReadXml(const char* text, QM_FontArray& faces) { return XmlReader(text).ReadFaces(faces); }

}  // namespace quillmark

std::int32_t QM_CreateSpecifierFromXML(const char* text, QM_FontArray** outArray) {
  if (!text || !outArray) return QM_STATUS_FAILED;
  auto faces = std::make_unique<QM_FontArray>();
  if (!quillmark::ReadXml(text, *faces).any_whole) return QM_STATUS_OUT_OF_RANGE;
  *outArray = faces.release();
  return QM_STATUS_OK;
}
