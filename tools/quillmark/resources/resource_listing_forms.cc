// The listing of a font file's resources as tables and as JSON.
#include <iostream>
#include <nlohmann/json.hpp>

#include "output/json_form.h"
#include "output/table.h"
#include "resources/resource_listing.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;
using Rows = std::vector<std::vector<std::string>>;

// "outline 128, 9 pt 129"
std::string Associations(const std::vector<FondEntry>& entries) {
  std::string text;
  for (const FondEntry& entry : entries) {
    const std::string what = entry.size == 0 ? "outline" : std::to_string(entry.size) + " pt";
    text += (text.empty() ? "" : ", ") + what + ' ' + std::to_string(entry.id);
  }
  return text;
}

Json StyleObject(const ListedStyle& style) {
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
  return object;
}

}  // namespace

void WriteListingTables(const ResourceListing& listing) {
  Rows rows;
  for (const ListedResource& resource : listing.resources) {
    rows.push_back({TypeText(resource.type), resource.id ? std::to_string(*resource.id) : "",
                    resource.id ? std::to_string(resource.size) : "data outside the file", resource.name});
  }
  WriteTable({{"TYPE"}, {"ID"}, {"SIZE"}, {"NAME"}}, rows);
  if (listing.left_out > 0) std::cout << "and " << listing.left_out << " more\n";
  for (const ListedFond& fond : listing.fonds) {
    std::cout << "\nFOND " << fond.id << ' ' << Printable(fond.name) << '\n';
    rows.clear();
    for (const ListedStyle& style : fond.styles) {
      const bool is_missing = !style.printer_font.empty() && !style.printer_font_exists;
      rows.push_back({std::to_string(style.style), Associations(style.entries), style.post_script_name,
                      style.printer_font + (is_missing ? " (missing)" : "")});
    }
    WriteTable({{"STYLE"}, {"ASSOCIATIONS"}, {"POSTSCRIPT NAME"}, {"PRINTER FONT"}}, rows);
  }
}

// One object, in which each resource and each FOND has a line.
void WriteListingJson(const std::string& path, const ResourceListing& listing) {
  std::cout << "{\n  \"path\": " << JsonText(path) << ",\n  \"resources\": ";
  JsonArray resources(std::cout, "  ");
  for (const ListedResource& resource : listing.resources) {
    Json object = {{"type", TypeText(resource.type)}};
    if (resource.id) {
      object["id"] = *resource.id;
      object["size"] = resource.size;
      object["name"] = resource.name;
    }
    resources.Add(JsonText(object));
  }
  resources.Finish(",\n");
  std::cout << "  \"resourcesLeftOut\": " << listing.left_out << ",\n  \"fonds\": ";
  JsonArray fonds(std::cout, "  ");
  for (const ListedFond& fond : listing.fonds) {
    Json styles = Json::array();
    for (const ListedStyle& style : fond.styles) styles.push_back(StyleObject(style));
    fonds.Add(JsonText({{"id", fond.id}, {"name", fond.name}, {"styles", std::move(styles)}}));
  }
  fonds.Finish("\n}\n");
}

}  // namespace quillmark::tool
