// The content of `quillmark resources`: the resources of a font file, and what each FOND holds.
#ifndef QUILLMARK_TOOL_RESOURCES_RESOURCE_LISTING_H_
#define QUILLMARK_TOOL_RESOURCES_RESOURCE_LISTING_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "resources/fond_record.h"
#include "resources/quillmark_resource_file.h"

namespace quillmark::tool {

struct ListedResource {
  ResType type = 0;
  std::optional<ResID> id;  // nothing where the data lie outside the file
  Size size = 0;
  std::string name;
};

struct ListedStyle {
  std::int16_t style = 0;
  std::vector<FondEntry> entries;  // which resource serves which size
  std::string post_script_name;
  std::string printer_font;  // file of a style that has no outline in the font file
  bool printer_font_exists = false;
};

struct ListedFond {
  ResID id = 0;
  std::string name;
  std::vector<ListedStyle> styles;
};

struct ResourceListing {
  // At most as many as real font files hold, since in a small file thousands of types can share one list.
  std::vector<ListedResource> resources;
  std::size_t left_out = 0;  // how many more there are
  std::vector<ListedFond> fonds;
};

// Adds what the file holds. When that spends the file's budget, `listing` has what was reached.
void ListResources(QuillmarkResourceFile& file, ResourceListing& listing);

void WriteListingTables(const ResourceListing& listing);
void WriteListingJson(const std::string& path, const ResourceListing& listing);

}  // namespace quillmark::tool

#endif
