// The content of `quillmark resources`: the resources of a font file, and what each FOND holds.
#ifndef QUILLMARK_TOOL_RESOURCES_RESOURCE_LISTING_H_
#define QUILLMARK_TOOL_RESOURCES_RESOURCE_LISTING_H_

#include <cstddef>
#include <cstdint>
#include <memory>
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

// Lists at most as many resources as real font files hold, since in a small file thousands of types can share
// one list. Returns how many more there are.
std::size_t ListResources(QuillmarkResourceFile& file, std::vector<ListedResource>& listed);

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

// Takes ownership of the FOND.
ListedFond LookAtFond(QuillmarkResourceFile& file, Handle fond);

// Writes the resources, then the FONDs one after another, to standard output.
class ListingWriter {
 public:
  virtual ~ListingWriter() = default;
  virtual void Add(const std::vector<ListedResource>& resources, std::size_t left_out) = 0;
  virtual void Add(const ListedFond& fond) = 0;
  virtual void Finish() = 0;
};

std::unique_ptr<ListingWriter> MakeListingTables();
std::unique_ptr<ListingWriter> MakeListingJson(const std::string& path);

}  // namespace quillmark::tool

#endif
