#include "output/json_form.h"

#include <nlohmann/json.hpp>

namespace quillmark::tool {

std::string JsonObject(const Face& face, const std::vector<const Field*>& named) {
  auto object = nlohmann::ordered_json::object();
  // Reserved at once: growing it field by field takes as long as all the rest.
  object.get_ref<nlohmann::ordered_json::object_t&>().reserve(AllFields().size());
  if (named.empty()) {
    for (const Field& field : AllFields()) {
      if (field.use == FieldUse::kOnRequest) continue;
      if (auto value = field.value(face); !value.is_null()) object[field.name] = std::move(value);
    }
  } else {
    for (const Field* field : named) object[field->name] = field->value(face);
  }
  return JsonText(object);
}

std::string JsonText(const nlohmann::ordered_json& value) {
  return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void WriteJsonDocument(std::ostream& out, const nlohmann::ordered_json& document) {
  out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

void JsonArray::Add(const std::string& objects) {
  out_ << (empty_ ? "[\n" + indent_ + "  " : Between()) << objects;
  empty_ = false;
}

void JsonArray::Finish(const char* after) {
  if (empty_) {
    out_ << "[]";
  } else {
    out_ << '\n' << indent_ << ']';
  }
  out_ << after;
}

}  // namespace quillmark::tool
