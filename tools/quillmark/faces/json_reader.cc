#include "faces/json_reader.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include "faces/attributes.h"
#include "faces/fields.h"
#include "platform/budget.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::json;  // an ordered one takes the square of the keys

// One face that is read and kept, and written with all its fields.
constexpr std::uint64_t kFaceSteps = Budget::kFace + Budget::kFace / 2;

constexpr const char* kBlanks = " \t\r\n";

// The values of one object. A value that identify does not write is a fault of its field.
class ObjectReader {
 public:
  explicit ObjectReader(const Json& object) : object_(object) {}

  const char* wrong_field() const { return wrong_field_; }

  std::optional<std::string> Text(const char* name) { return Value<std::string>(name, IsText); }

  template <typename T>
  std::optional<T> Number(const char* name) {
    // A number of more than 64 bits is read as a fraction.
    return Value<T>(name, [](const Json& value) {
      return value.is_number_integer() && value <= std::numeric_limits<T>::max() &&
             value >= std::numeric_limits<T>::min();
    });
  }

  std::optional<std::uint32_t> Hexadecimal(const char* name) {
    const auto text = Value<std::string>(name, [](const Json& value) {
      if (!value.is_string()) return false;
      const auto& digits = value.get_ref<const std::string&>();
      return digits.size() == 8 && digits.find_first_not_of("0123456789ABCDEF") == std::string::npos;
    });
    if (!text) return std::nullopt;
    return static_cast<std::uint32_t>(std::stoul(*text, nullptr, 16));
  }

  std::optional<bool> Truth(const char* name) {
    return Value<bool>(name, [](const Json& value) { return value.is_boolean(); });
  }

  std::optional<std::vector<std::string>> Texts(const char* name) {
    return Value<std::vector<std::string>>(name, [](const Json& value) {
      return value.is_array() && std::all_of(value.begin(), value.end(), IsText);
    });
  }

 private:
  // Nothing for a field that is missing, null, or wrong by `fits`.
  template <typename T, typename Fits>
  std::optional<T> Value(const char* name, Fits fits) {
    const auto found = object_.find(name);
    if (found == object_.end() || found->is_null()) return std::nullopt;
    if (fits(*found)) return found->template get<T>();
    wrong_field_ = name;
    return std::nullopt;
  }

  // No name holds a NUL, which would cut it.
  static bool IsText(const Json& value) {
    return value.is_string() && value.get_ref<const std::string&>().find('\0') == std::string::npos;
  }

  const Json& object_;
  const char* wrong_field_ = nullptr;
};

class FacesReader {
 public:
  FacesReader(std::string path, bool wants_array) : path_(std::move(path)), wants_array_(wants_array) {
    read_.array.reset(new QM_FontArray);
  }

  // An array, or objects one after another.
  void Read(const std::string& text) {
    Budget budget(text.size());  // spent by objects of very few bytes, each of which becomes a whole face
    std::istringstream in(text);
    const bool is_array = (in >> std::ws).peek() == '[';
    char next = 0;  // the array's bracket or comma read last; an empty array has no object to read
    if (is_array && (in >> next >> std::ws).peek() == ']') in >> next;
    const auto place = [&] {  // the end where nothing is left to read
      const auto at = in.tellg();
      return at < 0 ? text.size() : static_cast<std::size_t>(at);
    };
    std::size_t start = 0;
    try {
      // Each object is taken as soon as it is read, so that no more than one is held. The library's own way
      // to do that, a callback, takes the square of the objects inside.
      while (read_.fault.empty() && (is_array ? next != ']' : !(in >> std::ws).eof())) {
        start = place();
        Json object;
        in >> object;
        budget.Charge(kFaceSteps);
        Take(object);
        if (is_array && read_.fault.empty() && (!(in >> next) || (next != ',' && next != ']')))
          TellDamage(text, place());
      }
      if (read_.fault.empty() && !(in >> std::ws).eof()) TellDamage(text, place());
    } catch (const Json::parse_error& error) {
      TellDamage(text, start + error.byte);
    } catch (const BudgetSpent&) {
      read_.is_cut = true;
    }
  }

  FacesOrFault Finish() {
    if (read_.fault.empty() && read_.faces.empty()) read_.fault = "its JSON lists no face";
    return std::move(read_);
  }

 private:
  void TellDamage(const std::string& text, std::size_t place) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(place, text.size()));
    read_.fault = "JSON that is damaged or cut short in line " +
                  std::to_string(1 + std::count(text.begin(), end, '\n'));
  }

  void Take(const Json& object) {
    if (!read_.fault.empty()) return;
    const std::string name = "face " + std::to_string(read_.faces.size() + 1) + " of its JSON";
    if (!IsFace(object)) {
      read_.fault = name + " has no field that identify writes";
      return;
    }
    ObjectReader fields(object);
    TakeFace(fields);
    if (fields.wrong_field() != nullptr) {
      read_.fault = name + ": the value of " + fields.wrong_field() + " is none that identify writes";
    }
  }

  // Other objects may have a path, too.
  static bool IsFace(const Json& object) {
    return std::any_of(AllFields().begin(), AllFields().end(), [&](const Field& field) {
      return std::string_view(field.name) != "path" && object.is_object() && object.contains(field.name);
    });
  }

  void TakeFace(ObjectReader& fields) {
    QM_FontSpecifier specifier;
    for (const TextAttribute& field : kTextAttributes) {
      const auto text = fields.Text(field.name);
      if (!text) continue;
      specifier.*field.in_array = *text;
      specifier.attributes |= field.attribute;
    }
    for (const NumberAttribute& field : kNumberAttributes) {
      const auto number =
          field.is_hexadecimal ? fields.Hexadecimal(field.name) : fields.Number<std::uint32_t>(field.name);
      if (!number) continue;
      specifier.*field.in_array = *number;
      specifier.attributes |= field.attribute;
    }
    QM_FontArray one;
    one.push_back(specifier);
    Face face = FacesOf(&one, path_).front();
    face.index = static_cast<std::uint32_t>(read_.faces.size());
    const auto keep = [](auto& member, auto value) {
      if (value) member = *std::move(value);
    };
    keep(face.path, fields.Text("path"));
    keep(face.index, fields.Number<std::uint32_t>("face"));
    keep(face.foundry, fields.Text("foundry"));
    keep(face.classification, fields.Text("class"));
    keep(face.styles, fields.Texts("styles"));
    keep(face.outline_file_exists, fields.Truth("printerFontExists"));
    keep(face.fond_id, fields.Number<std::int16_t>("fondID"));
    keep(face.style, fields.Number<std::int16_t>("style"));
    keep(face.variable, fields.Truth("variable"));
    read_.faces.push_back(std::move(face));
    if (wants_array_) read_.array->Append(std::move(one));
  }

  const std::string path_;
  const bool wants_array_;
  FacesOrFault read_;
};

}  // namespace

bool BeginsAsJson(const std::string& text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first != std::string::npos && (text[first] == '[' || text[first] == '{');
}

FacesOrFault ReadJsonFaces(const std::string& text, const std::string& path, bool wants_array) {
  FacesReader reader(path, wants_array);
  reader.Read(text);
  return reader.Finish();
}

}  // namespace quillmark::tool
