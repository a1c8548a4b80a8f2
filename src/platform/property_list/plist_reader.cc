// Reads property-list text as the platform's reader does, which is no XML parser: strings come back exactly
// as they were written, control characters and carriage returns too, and much that XML demands may be
// missing. Takes one pass over the text and keeps its own stack, so that time is linear and no nesting
// exhausts the thread's. Tests: tests/platform/property_list_test.cc, fuzz/plist_fuzzer.cc.
#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/core_foundation/cf_date.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/property_list/plist_leaves.h"
#include "platform/property_list/property_list_format.h"
#include "platform/text/ascii_case.h"
#include "platform/text/text_encoding.h"

namespace quillmark::cf {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

enum class Tag { kPlist, kArray, kDict, kKey, kString, kData, kDate, kReal, kInteger, kTrue, kFalse };
constexpr std::array<std::string_view, 11> kTagNames = {"plist", "array", "dict",    "key",  "string", "data",
                                                        "date",  "real",  "integer", "true", "false"};

std::string_view NameOf(Tag tag) { return kTagNames[static_cast<std::size_t>(tag)]; }

bool IsContainer(Tag tag) { return tag == Tag::kPlist || tag == Tag::kArray || tag == Tag::kDict; }

// True when the text begins with an XML header that names another encoding than UTF-8. Whatever it holds, it
// was not written for this reader.
bool DeclaresOtherEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return false;
  std::string_view header = text.substr(0, text.find("?>"));
  const std::size_t found = header.find("encoding");
  if (found == std::string_view::npos) return false;
  header.remove_prefix(found);
  const std::size_t opening = header.find_first_of("\"'");
  if (opening == std::string_view::npos) return true;
  const char quote = header[opening];
  header.remove_prefix(opening + 1);
  std::string name(header.substr(0, header.find(quote)));
  std::transform(name.begin(), name.end(), name.begin(), ToUpperAscii);
  return name != "UTF-8";
}

// What a function returns that failed.
struct Failure {
  operator bool() const { return false; }
  operator CFRef<CFTypeRef>() const { return {}; }
  template <typename T>
  operator std::optional<T>() const {
    return std::nullopt;
  }
};

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text), rest_(text) {}

  // The tree, or nothing and a reason in error().
  CFRef<CFTypeRef> Read();
  std::string error() const;

 private:
  struct StartTag {
    Tag tag;
    bool is_empty;  // as <array/>
  };
  // An open array, dictionary or plist element with its values so far.
  struct Container {
    explicit Container(Tag element);

    Tag tag;
    CFRef<CFTypeRef> value;          // the array or dictionary; of a plist element, the one value in it
    CFDictionaryObject::Key key{};   // in a dictionary: waits for its value
    CFArrayObject* array = nullptr;  // `value` by its type
    CFDictionaryObject* dictionary = nullptr;
  };

  bool SkipToMarkup();
  std::optional<StartTag> ReadStartTag();
  bool ReadEndTag(Tag tag);
  bool Enter(Tag tag);
  CFRef<CFTypeRef> Leave();
  bool Place(Tag tag, CFRef<CFTypeRef> value);
  CFRef<CFTypeRef> ReadLeaf(StartTag start);
  CFRef<CFTypeRef> ReadContent(Tag tag, std::string_view content);
  CFRef<CFTypeRef> ReadString();
  bool SkipPast(std::string_view end);
  std::optional<std::string_view> TakeTo(std::string_view end);
  Failure Fail(const char* reason);

  const std::string_view text_;
  std::string_view rest_;
  std::vector<Container> open_;  // innermost last
  const char* reason_ = "";
};

Reader::Container::Container(Tag element) : tag(element) {
  if (tag == Tag::kArray) value = Adopt<CFTypeRef>(array = new CFArrayObject);
  if (tag == Tag::kDict) value = Adopt<CFTypeRef>(dictionary = new CFDictionaryObject);
}

Failure Reader::Fail(const char* reason) {
  reason_ = reason;
  return {};
}

std::string Reader::error() const {
  const std::string_view done = text_.substr(0, text_.size() - rest_.size());
  const auto line = std::count(done.begin(), done.end(), '\n') + 1;
  return std::string(reason_) + " on line " + std::to_string(line);
}

// The text before `end`; `end` itself is not taken.
std::optional<std::string_view> Reader::TakeTo(std::string_view end) {
  const std::size_t length = rest_.find(end);
  if (length == std::string_view::npos) return Fail("The text ends too early");
  const std::string_view taken = rest_.substr(0, length);
  rest_.remove_prefix(length);
  return taken;
}

bool Reader::SkipPast(std::string_view end) {
  if (!TakeTo(end)) return false;
  rest_.remove_prefix(end.size());
  return true;
}

// Passes blanks, comments, processing instructions and, outside all elements, document types.
bool Reader::SkipToMarkup() {
  for (;;) {
    rest_ = WithoutLeadingBlanks(rest_);
    if (rest_.starts_with("<?")) {
      rest_.remove_prefix(2);
      if (!SkipPast("?>")) return false;
    } else if (rest_.starts_with("<!--")) {
      rest_.remove_prefix(4);
      if (!SkipPast("-->")) return false;
    } else if (open_.empty() && rest_.starts_with("<!DOCTYPE")) {
      const auto declaration = TakeTo(">");
      if (!declaration) return false;
      if (declaration->find('[') != std::string_view::npos) return Fail("A document type has a subset");
      rest_.remove_prefix(1);
    } else if (rest_.empty()) {
      return Fail("The text ends too early");
    } else {
      return rest_.front() == '<' || Fail("Text stands between elements");
    }
  }
}

// The name runs to a blank or the end of the tag; attributes are passed over, up to the first > even in
// quotes.
std::optional<Reader::StartTag> Reader::ReadStartTag() {
  rest_.remove_prefix(1);
  const auto content = TakeTo(">");
  if (!content) return std::nullopt;
  const bool is_empty = content->ends_with('/');
  const auto blank = std::find_if(content->begin(), content->end(), IsBlank);
  const std::string_view name = blank == content->end() ? content->substr(0, content->size() - is_empty)
                                                        : std::string_view(content->begin(), blank);
  const auto known = std::find(kTagNames.begin(), kTagNames.end(), name);
  if (known == kTagNames.end()) return Fail("An unknown element stands");
  rest_.remove_prefix(1);
  return StartTag{static_cast<Tag>(known - kTagNames.begin()), is_empty};
}

bool Reader::ReadEndTag(Tag tag) {
  const std::string_view name = NameOf(tag);
  if (!rest_.starts_with("</") || !rest_.substr(2).starts_with(name)) return Fail("A close tag is missing");
  rest_.remove_prefix(2 + name.size());
  rest_ = WithoutLeadingBlanks(rest_);
  if (!rest_.starts_with('>')) return Fail("A close tag is malformed");
  rest_.remove_prefix(1);
  return true;
}

bool Reader::Enter(Tag tag) {
  // The plist element around the whole list is no level, but any other one is.
  const bool is_wrapped = !open_.empty() && open_.front().tag == Tag::kPlist;
  if (open_.size() - is_wrapped >= kMostLevels) return Fail("Elements are nested too deeply");
  open_.emplace_back(tag);
  return true;
}

// Closes the innermost container. Nothing is returned when it cannot be closed here.
CFRef<CFTypeRef> Reader::Leave() {
  Container& container = open_.back();
  const bool is_complete =
      container.key ? Fail("A key has no value") : container.value || Fail("A plist element is empty");
  if (!is_complete || !ReadEndTag(container.tag)) return {};
  CFRef<CFTypeRef> value = std::move(container.value);
  open_.pop_back();
  return value;
}

// Puts a value that was read as a `tag` element into the innermost open one.
bool Reader::Place(Tag tag, CFRef<CFTypeRef> value) {
  Container& container = open_.back();
  if (container.array) {
    container.array->values.push_back(std::move(value));
  } else if (!container.dictionary) {
    if (container.value) return Fail("A plist element holds more than one value");
    container.value = std::move(value);
  } else if (container.key) {
    container.dictionary->Set(std::exchange(container.key, {}), std::move(value));
  } else {
    if (tag != Tag::kKey) return Fail("A value has no key");
    container.key = Adopt(static_cast<CFStringRef>(value.Yield()));
  }
  return true;
}

// Text as it stands, to the close tag: no line end changed, nothing trimmed.
CFRef<CFTypeRef> Reader::ReadString() {
  constexpr std::string_view kSectionStart = "<![CDATA[";
  constexpr std::string_view kSectionEnd = "]]>";
  std::string text;
  for (;;) {
    const auto end = std::find_if(rest_.begin(), rest_.end(), [](char c) { return c == '<' || c == '&'; });
    const auto plain = static_cast<std::size_t>(end - rest_.begin());
    text += rest_.substr(0, plain);
    rest_.remove_prefix(plain);
    if (rest_.starts_with('&')) {
      constexpr std::size_t kLongestEntity = 12;  // &#x, eight digits and ;
      const std::size_t end_of_name = rest_.substr(0, kLongestEntity).find(';');
      const auto character = end_of_name == std::string_view::npos
                                 ? std::nullopt
                                 : ParseEntity(rest_.substr(1, end_of_name - 1));
      if (!character) return Fail("An unknown entity stands");
      text += *character;
      rest_.remove_prefix(end_of_name + 1);
    } else if (rest_.starts_with(kSectionStart)) {
      rest_.remove_prefix(kSectionStart.size());
      const auto section = TakeTo(kSectionEnd);
      if (!section) return {};
      text += *section;
      rest_.remove_prefix(kSectionEnd.size());
    } else {
      break;
    }
  }
  auto units = Utf8ToUtf16(text);
  if (!units) return Fail("A string is not UTF-8");
  // A mark at the start belongs to the text, though the conversion drops it.
  if (text.starts_with(kByteOrderMark)) units->insert(units->begin(), u'\uFEFF');
  return Adopt<CFTypeRef>(new CFStringObject(*std::move(units)));
}

// The rest of an element that holds no other. Nothing is returned for one that cannot be read.
CFRef<CFTypeRef> Reader::ReadLeaf(StartTag start) {
  const auto [tag, is_empty] = start;
  CFRef<CFTypeRef> value;
  if (IsContainer(tag)) {
    value = Container(tag).value;
    if (!value) Fail("A plist element is empty");
  } else if (tag == Tag::kTrue || tag == Tag::kFalse) {
    value = Share<CFTypeRef>(tag == Tag::kTrue ? kCFBooleanTrue : kCFBooleanFalse);
  } else if (tag == Tag::kString || tag == Tag::kKey) {
    value = is_empty ? Adopt<CFTypeRef>(new CFStringObject(std::u16string())) : ReadString();
  } else {
    const auto content = is_empty ? std::string_view() : TakeTo("<");
    if (!content) return {};
    value = ReadContent(tag, *content);
  }
  if (!value || is_empty || ReadEndTag(tag)) return value;
  return {};
}

CFRef<CFTypeRef> Reader::ReadContent(Tag tag, std::string_view content) {
  if (tag == Tag::kData) return Adopt<CFTypeRef>(new CFDataObject(ParseData(content)));
  if (tag == Tag::kInteger) {
    if (const auto number = ParseInteger(content)) return Adopt<CFTypeRef>(new CFNumberObject(*number));
  } else if (tag == Tag::kReal) {
    if (const auto number = ParseReal(content)) return Adopt<CFTypeRef>(new CFNumberObject(*number));
  } else if (tag == Tag::kDate) {
    if (const auto time = ParseDateText(content)) return Adopt<CFTypeRef>(new CFDateObject(*time));
  }
  return Fail("A malformed number or date stands");
}

CFRef<CFTypeRef> Reader::Read() {
  if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
  if (DeclaresOtherEncoding(rest_)) return Fail("Another encoding than UTF-8 is declared");
  for (;;) {
    if (!SkipToMarkup()) return {};
    Tag tag{};
    CFRef<CFTypeRef> value;
    if (!open_.empty() && rest_.starts_with("</")) {
      tag = open_.back().tag;
      value = Leave();
    } else {
      const auto start = ReadStartTag();
      if (!start) return {};
      tag = start->tag;
      if (IsContainer(tag) && !start->is_empty) {
        if (!Enter(tag)) return {};
        continue;
      }
      value = ReadLeaf(*start);
    }
    // Text after the first complete element is ignored.
    if (!value || open_.empty()) return value;
    if (!Place(tag, std::move(value))) return {};
  }
}

}  // namespace
}  // namespace quillmark::cf

// Every container of a tree can be changed through a mutable reference, and no leaf need be, so the
// requested mutability makes no difference.
CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef data,
                                                  CFOptionFlags /*mutability*/, CFStringRef* errorString) {
  quillmark::cf::Reader reader(data ? std::string_view(data->bytes) : std::string_view());
  auto list = reader.Read();
  if (errorString) {
    *errorString =
        list ? nullptr : CFStringCreateWithCString(allocator, reader.error().c_str(), kCFStringEncodingUTF8);
  }
  return list.Yield();
}
