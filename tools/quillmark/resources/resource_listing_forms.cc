// The listing of a font file's resources as tables and as JSON.
#include <iostream>
#include <nlohmann/json.hpp>

#include "output/json_form.h"
#include "output/table_form.h"
#include "resources/resource_listing.h"
#include "text/display_width.h"
#include "text/printable.h"
#include "text/terminal.h"
#include "text/type_text.h"

namespace quillmark::tool {
namespace {

class TableListing : public ListingWriter {
 public:
  void Add(const std::vector<ListedResource>& resources, std::size_t left_out) override {
    std::vector<std::vector<std::string>> rows;
    rows.reserve(resources.size());
    for (const ListedResource& resource : resources) {
      rows.push_back({TypeText(resource.type), resource.id ? std::to_string(*resource.id) : "",
                      resource.id ? std::to_string(resource.size) : "data outside the file", resource.name});
    }
    WriteTable(std::cout, {{"TYPE"}, {"ID"}, {"SIZE"}, {"NAME"}}, rows, OutputLook());
    if (left_out > 0) std::cout << "and " << left_out << " more\n";
  }

  void Add(const ListedFond& fond) override {
    std::cout << "\nFOND " << fond.id << ' ' << Printable(fond.name) << '\n';
    std::vector<std::vector<std::string>> rows;
    for (const ListedStyle& style : fond.styles) {
      const bool is_missing = !style.printer_font.empty() && !style.printer_font_exists;
      rows.push_back({std::to_string(style.style), Associations(style.entries), style.post_script_name,
                      style.printer_font + (is_missing ? " (missing)" : "")});
    }
    WriteTable(std::cout, {{"STYLE"}, {"ASSOCIATIONS"}, {"POSTSCRIPT NAME"}, {"PRINTER FONT"}}, rows,
               OutputLook());
  }

  void Finish() override {}

 private:
  // "outline 128, 9 pt 129"
  static std::string Associations(const std::vector<FondEntry>& entries) {
    std::string text;
    for (const FondEntry& entry : entries) {
      text += text.empty() ? "" : ", ";
      text +=
          (entry.size == 0 ? "outline" : std::to_string(entry.size) + " pt") + " " + std::to_string(entry.id);
    }
    return text;
  }
};

// One object, its parts written as they come.
class JsonListing : public ListingWriter {
 public:
  explicit JsonListing(const std::string& path) { std::cout << "{\n\"path\": " << Text(path) << ",\n"; }

  void Add(const std::vector<ListedResource>& resources, std::size_t left_out) override {
    JsonArray list(std::cout);
    std::cout << "\"resources\": ";
    for (const ListedResource& resource : resources) {
      Json object = {{"type", TypeText(resource.type)}};
      if (resource.id) {
        object["id"] = *resource.id;
        object["size"] = resource.size;
        object["name"] = resource.name;
      }
      list.Add(Text(object));
    }
    list.Finish();
    std::cout << ",\"resourcesLeftOut\": " << left_out << ",\n\"fonds\": ";
  }

  void Add(const ListedFond& fond) override {
    Json styles = Json::array();
    for (const ListedStyle& style : fond.styles) {
      Json associations = Json::array();
      for (const FondEntry& entry : style.entries) {
        associations.push_back({{"size", entry.size}, {"id", entry.id}});
      }
      Json object = {{"style", style.style},
                     {"associations", std::move(associations)},
                     {"postScriptName", style.post_script_name}};
      if (!style.printer_font.empty()) {
        object["printerFont"] = style.printer_font;
        object["printerFontExists"] = style.printer_font_exists;
      }
      styles.push_back(std::move(object));
    }
    fonds_.Add(Text({{"id", fond.id}, {"name", fond.name}, {"styles", std::move(styles)}}));
  }

  void Finish() override {
    fonds_.Finish();
    std::cout << "}\n";
  }

 private:
  using Json = nlohmann::ordered_json;
  static std::string Text(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
  }

  JsonArray fonds_{std::cout};
};

}  // namespace

std::unique_ptr<ListingWriter> MakeListingTables() { return std::make_unique<TableListing>(); }

std::unique_ptr<ListingWriter> MakeListingJson(const std::string& path) {
  return std::make_unique<JsonListing>(path);
}

}  // namespace quillmark::tool
