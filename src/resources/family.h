// Family: one FOND of a resource file, parsed once for all of its styles: its association table, its style
// mapping table, its kerning and its names. Without a FOND, or with one that has no data, it is a family
// without styles. The record layouts are those of Inside Macintosh: Text, "The Font Family Resource". Tests:
// tests/resources/family_test.cc; fuzz/resource_map_fuzzer.cc.
#ifndef QUILLMARK_RESOURCES_FAMILY_H_
#define QUILLMARK_RESOURCES_FAMILY_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/resource_manager/resource_manager.h"
#include "resources/fond_kerning.h"
#include "resources/fond_record.h"
#include "resources/printer_font_name.h"
#include "resources/resource_handle.h"

namespace quillmark {

class QuillmarkResourceFile;

class Family {
 public:
  // Takes ownership of the FOND and releases it. Both may be null; `file` outlives the object.
  Family(QuillmarkResourceFile* file, Handle fond);
  Family(const Family&) = delete;
  Family& operator=(const Family&) = delete;

  bool has_data() const { return !record_.empty(); }
  // Whether there is a FOND; its data may be empty.
  bool exists() const { return fond_.get() != nullptr && *fond_.get() != nullptr; }
  ResID id() const { return id_; }  // -1 without a FOND
  // The name of the FOND resource, as stored; empty without one.
  const std::string& stored_name() const { return stored_name_; }
  const FondStyles& styles() const { return styles_; }
  const FondKerning& kerning();

  std::uint32_t getStyleOffsetFromFOND() const;
  bool isDoubleByteFOND() const;
  int getResIDForFOND(int index) const;  // of an entry, from 0; -1 when there is none
  bool styleExists(int style) const;
  // Resource ID of the first entry of the style, whatever its size; -1 when there is none.
  std::int16_t getFirstResourceID(std::int16_t style) const;
  // Resource ID of the first outline (size 0) of the style.
  std::optional<std::int16_t> FirstOutlineOfStyle(std::int16_t style) const;
  bool shouldHavePrinterFile(int style) const;
  // Distinct, ascending. Style codes from 0x8000, which styles() hands out as negative numbers, have none.
  std::vector<std::int16_t> getSortedNFNTsForFOND(int style) const;

  // Names, in UTF-8.
  std::string getPostScriptNameForFOND(int style) const;
  PrinterFontName ComposePrinterFontName(int style) const;
  // The file name of the style's printer font; empty when the FOND composes no PostScript name.
  std::string getPSPrinterNameForFOND(int style) const;
  // Where that file lies; nothing for a style with an outline, which needs none.
  std::optional<std::string> PrinterFontPath(int style) const;
  // The FOND's resource name in UTF-8; nothing without a FOND, and for a name that cannot be decoded.
  const std::optional<std::string>& getResourceNameFromFOND();
  // The PostScript name that a Multiple Master family's resource name gives, else `name`. `isMM` may be null;
  // it is only ever set, never cleared.
  std::string normalizePostScriptName(const std::string& name, bool* isMM) const;

 private:
  std::optional<std::string> DecodeResourceName() const;
  bool NamesOldBitmap() const;

  QuillmarkResourceFile* const file_;
  const ResourceHandle fond_;
  const Bytes record_;
  ResID id_ = -1;
  std::optional<std::string> map_name_;  // as stored; nothing when the FOND is not a resource of a map
  std::string stored_name_;
  const FondStyles styles_;
  const StyleMapping style_mapping_;
  std::optional<FondKerning> kerning_;
  std::optional<std::optional<std::string>> resource_name_;
};

}  // namespace quillmark

#endif
