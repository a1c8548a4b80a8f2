// QM_CreateSpecifierFromXML: reads the XML form back by searching for its tags; it is no XML parser and must
// not become one. A tag is searched from the start of a face's block to the end of the whole text, so a block
// that lacks it takes the value of a later one. Overlapping and shared values are charged to a budget;
// reading ends when it is spent. Tests: tests/api/stored_forms_test.cc; fuzz/xml_fuzzer.cc.
#include "api/xml_reader.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

struct TextTag {
  TagValues values;
  const StoredText& text;
};

struct NumberTag {
  TagValues values;
  const StoredNumber& number;
  // A long value that many blocks share is converted once.
  const char* last_value = nullptr;
  std::uint32_t last_number = 0;
};

class XmlReader {
 public:
  explicit XmlReader(std::string_view text)
      : budget_(text.size()),
        block_start_(text, "<FontData>"),
        block_end_(text, "</FontData>"),
        name_(text, "PostScriptName") {
    for (const StoredText& stored : kStoredTexts) texts_.push_back({TagValues(text, stored.name), stored});
    for (const StoredNumber& stored : kStoredNumbers) {
      numbers_.push_back({TagValues(text, stored.name), stored});
    }
  }

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
  // A face whose name is that of an earlier one is passed over before anything else of it is read.
  void AppendFace(std::size_t block, QM_FontArray& faces) {
    const std::string_view name = name_.ExtractTagValue(block).value_or("");
    if (name.data() == last_name_) return;
    last_name_ = name.data();
    budget_.Charge(Budget::kInsertion);
    budget_.ChargeBytes(name.size());
    if (names_.FirstFace(name, faces.size()) != faces.size()) return;
    budget_.Charge(Budget::kFace);
    QM_FontSpecifier face = NewStoredFace();
    for (TextTag& tag : texts_) {
      const auto value = tag.values.ExtractTagValue(block);
      if (!value) continue;
      budget_.Charge(value->size() * Budget::kKeptByte);
      face.*tag.text.field = std::string(*value);
      face.attributes |= tag.text.attribute;
    }
    for (NumberTag& tag : numbers_) {
      const auto value = tag.values.ExtractTagValue(block);
      if (!value) continue;
      // A number ends at the closing tag's "<" at the latest.
      if (value->data() != tag.last_value) tag.last_number = ParseLong(value->data(), tag.number.base);
      tag.last_value = value->data();
      face.*tag.number.field = tag.last_number;
      face.attributes |= tag.number.attribute;
    }
    faces.push_back(std::move(face));
  }

  Budget budget_;
  ForwardSearch block_start_;
  ForwardSearch block_end_;
  TagValues name_;
  NamesSeen names_;
  const char* last_name_ = nullptr;  // a shared name is looked up once
  std::vector<TextTag> texts_;
  std::vector<NumberTag> numbers_;
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
