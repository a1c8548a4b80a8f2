// Writes a property list as the platform's XML text, byte for byte as the platform does, so that texts stored
// here and there are the same: one element a line, one tab a level, keys in the order of their code units,
// and nothing escaped but the ampersand and the two angle brackets. Tests:
// tests/platform/property_list_test.cc, fuzz/plist_fuzzer.cc.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/core_foundation/cf_date.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/property_list/property_list_format.h"
#include "platform/text/text_encoding.h"

namespace quillmark::cf {
namespace {

// Lines of data keep to this width, in which a tab counts as eight columns; tabs past the eighth are not
// written.
constexpr std::size_t kDataColumns = 76;
constexpr std::size_t kTabColumns = 8;
constexpr std::size_t kMostDataTabs = 8;

std::string RealText(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "+infinity" : "-infinity";
  if (value == 0) return "0.0";  // of either sign
  char digits[32];
  // Not printf, which writes the decimal point of the host's locale.
  const auto end =
      std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::general, 17).ptr;
  return {digits, end};
}

std::string Base64(std::string_view bytes) {
  constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  while (!bytes.empty()) {
    const std::string_view group = bytes.substr(0, 3);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits * 256u + (i < group.size() ? static_cast<unsigned char>(group[i]) : 0u);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= group.size() ? kAlphabet[(bits >> (18 - 6 * i)) % 64] : '=';
    }
    bytes.remove_prefix(group.size());
  }
  return text;
}

class Writer {
 public:
  // Nothing when the list holds what cannot be written: a lone surrogate, a date outside the four-digit
  // years, an object that is no property list, more levels than the reader takes.
  std::optional<std::string> Write(const Object* list) {
    text_ = kTextHead;
    if (!WriteValue(list, 0)) return std::nullopt;
    text_ += kTextTail;
    return std::move(text_);
  }

 private:
  void WriteLine(std::string_view line, std::size_t level) {
    text_.append(level, '\t');
    text_ += line;
    text_ += '\n';
  }

  void WriteElement(std::string_view tag, std::string_view content, std::size_t level) {
    text_.append(level, '\t');
    text_.append("<").append(tag).append(">");
    AppendEscaped(text_, content);
    text_.append("</").append(tag).append(">\n");
  }

  bool WriteText(std::string_view tag, const CFStringObject& string, std::size_t level) {
    if (const char* const ascii = string.ascii()) {
      WriteElement(tag, ascii, level);
      return true;
    }
    const auto utf8 = Utf16ToUtf8(string.units());
    if (utf8) WriteElement(tag, *utf8, level);
    return utf8.has_value();
  }

  bool WriteArray(const CFArrayObject& array, std::size_t level) {
    if (array.values.empty()) {
      WriteLine("<array/>", level);
      return true;
    }
    if (level >= kMostLevels) return false;
    WriteLine("<array>", level);
    for (const auto& value : array.values) {
      if (!WriteValue(static_cast<const Object*>(value.get()), level + 1)) return false;
    }
    WriteLine("</array>", level);
    return true;
  }

  bool WriteDictionary(const CFDictionaryObject& dictionary, std::size_t level) {
    if (dictionary.entries.empty()) {
      WriteLine("<dict/>", level);
      return true;
    }
    if (level >= kMostLevels) return false;
    WriteLine("<dict>", level);
    for (const auto& [key, value] : dictionary.entries) {
      if (!WriteText("key", *key.get(), level + 1)) return false;
      if (!WriteValue(static_cast<const Object*>(value.get()), level + 1)) return false;
    }
    WriteLine("</dict>", level);
    return true;
  }

  bool WriteDate(const CFDateObject& date, std::size_t level) {
    const auto text = DateText(date.time);
    if (text) WriteElement("date", *text, level);
    return text.has_value();
  }

  void WriteData(const std::string& bytes, std::size_t level) {
    const std::size_t tabs = std::min(level, kMostDataTabs);
    const std::size_t width = kDataColumns - tabs * kTabColumns;
    const std::string encoded = Base64(bytes);
    WriteLine("<data>", level);
    for (std::string_view rest = encoded; !rest.empty(); rest.remove_prefix(std::min(width, rest.size()))) {
      WriteLine(rest.substr(0, width), tabs);
    }
    WriteLine("</data>", level);
  }

  void WriteNumber(const CFNumberObject& number, std::size_t level) {
    if (const auto* real = std::get_if<double>(&number.value)) {
      WriteElement("real", RealText(*real), level);
    } else {
      const auto digits = [](auto integer) { return std::to_string(integer); };
      WriteElement("integer", std::visit(digits, number.value), level);
    }
  }

  bool WriteValue(const Object* value, std::size_t level) {
    if (!value) return false;
    switch (value->type()) {
      case Type::kString:
        return WriteText("string", *static_cast<const CFStringObject*>(value), level);
      case Type::kArray:
        return WriteArray(*static_cast<const CFArrayObject*>(value), level);
      case Type::kDictionary:
        return WriteDictionary(*static_cast<const CFDictionaryObject*>(value), level);
      case Type::kDate:
        return WriteDate(*static_cast<const CFDateObject*>(value), level);
      case Type::kNumber:
        WriteNumber(*static_cast<const CFNumberObject*>(value), level);
        return true;
      case Type::kData:
        WriteData(static_cast<const CFDataObject*>(value)->bytes, level);
        return true;
      case Type::kBoolean:
        WriteLine(static_cast<const CFBooleanObject*>(value)->value ? "<true/>" : "<false/>", level);
        return true;
      case Type::kUrl:
      case Type::kBundle:
        break;
    }
    return false;
  }

  std::string text_;
};

}  // namespace

void AppendEscaped(std::string& text, std::string_view added) {
  for (const char c : added) {
    const char* const escape = c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : nullptr;
    text += escape != nullptr ? std::string_view(escape) : std::string_view(&c, 1);
  }
}

}  // namespace quillmark::cf

CFDataRef CFPropertyListCreateXMLData(CFAllocatorRef /*allocator*/, CFPropertyListRef list) {
  auto text = quillmark::cf::Writer().Write(static_cast<const quillmark::cf::Object*>(list));
  return text ? new CFDataObject(*std::move(text)) : nullptr;
}
