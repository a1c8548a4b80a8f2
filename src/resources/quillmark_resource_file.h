// QuillmarkResourceFile: one open resource map of a font file, its resources, and what its FOND tables say.
// Every method makes this file the thread's current resource file first, so several may be open at once;
// reading looks at the file's own map only. Handles that come back belong to the map: callers release them
// (ReleaseResource) and never dispose of them. A failed platform call gives the empty value: 0, null, false.
// Methods that walk a type (getSortedResIDsForType, getSortedStyles, getPrinterFiles, purgeAllBut) release
// its resources behind them, also those that a caller holds: hold none across such a call.
// Use on one thread. The record layouts are those of Inside Macintosh: Text, "The Font Family Resource".
// Tests: tests/resources/; fuzz/resource_map_fuzzer.cc.
#ifndef QUILLMARK_RESOURCES_QUILLMARK_RESOURCE_FILE_H_
#define QUILLMARK_RESOURCES_QUILLMARK_RESOURCE_FILE_H_

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/resource_manager.h"
#include "resources/fond_record.h"

namespace quillmark {

// What activation answers for a file that exists.
inline constexpr OSStatus kATSInvalidFontContainerAccess = -985;

class QuillmarkResourceFile {
 public:
  // Opens the resource fork of `path`, failing that its data fork, as a resource map. Null when neither
  // opens. The caller owns one reference.
  static QuillmarkResourceFile* initWithFile(const std::string& path, bool readOnly);
  void retain();
  void release();  // the last one closes the map, which writes removals out when it was opened for writing
  QuillmarkResourceFile(const QuillmarkResourceFile&) = delete;
  QuillmarkResourceFile& operator=(const QuillmarkResourceFile&) = delete;

  std::string file() const { return path_; }
  bool isDataFork() const { return is_data_fork_; }

  // There is no platform font service on Linux: activation answers an error, deactivation of nothing 0.
  OSStatus activate();
  OSStatus deactivate();

  int countResType(ResType type);
  int count1ResTypes();
  Handle getResourceHandleViaGet1IndResource(ResType type, int resIndex);  // from 1
  Handle getResourceHandleForType(ResType type, int resID);
  void getResourceTypeViaGet1IndType(ResType* type, int resIndex);  // from 1
  std::vector<std::int16_t> getSortedResIDsForType(ResType type);   // distinct, ascending
  bool purgeResource(ResType type, int resID);
  bool purgeAllBut(const std::set<std::int16_t>& ids, ResType type);

  // FOND readers (fond_styles.cc). A null handle, null data or a short record gives the empty value.
  std::uint32_t getStyleOffsetFromFOND(Handle fond);
  bool isDoubleByteFOND(Handle fond);
  // Distinct style codes, ascending as unsigned 16-bit numbers, handed on as signed ones.
  std::vector<std::int16_t> getSortedStylesForFOND(Handle fond);
  std::vector<std::int16_t> getSortedStyles();
  // The association table of one FOND; the reference holds until another FOND is asked about.
  const FondStyles& StylesOf(Handle fond);
  std::vector<std::int16_t> getSortedNFNTsForFOND(Handle fond, int style);
  bool styleExists(int style, Handle fond);
  int getResIDForFOND(Handle fond, int index);  // from 0; -1 when there is none
  // Resource ID of the first entry of the style, whatever its size.
  std::optional<std::int16_t> FirstResIDOfStyle(Handle fond, std::int16_t style);
  // Resource ID of the first outline (size 0) of the style.
  std::optional<std::int16_t> FirstOutlineOfStyle(Handle fond, std::int16_t style);
  bool shouldHavePrinterFile(Handle fond, int style);

  // Names (fond_names.cc, printer_font_search.cc). Results are UTF-8.
  std::string getPostScriptNameForFOND(Handle fond, int style);
  std::string getPSPrinterNameForFOND(Handle fond, int style);
  std::optional<std::string> getPrinterNameFromFontActivation(
      const std::optional<std::string>& postScriptName);
  std::vector<std::string> getPrinterFiles();
  // How many PostScript names have been given a file name. While it stays the same, the same FONDs and styles
  // are given the same names; a PostScript name keeps the one that it met first.
  std::size_t CountKnownPrinterFiles() const { return printer_file_from_post_script_name_.size(); }
  // Where a printer font file of that name lies: beside this file. Nothing for an empty name, and for one
  // that holds "/": names come out of the font and must not lead elsewhere.
  std::optional<std::string> PathOfPrinterFile(const std::string& name) const;
  std::optional<std::string> getResourceNameFromFOND(Handle fond);
  // `isMM` may be null; it is only ever set, never cleared.
  std::string normalizePostScriptName(const std::string& name, Handle fond, bool* isMM);

 private:
  // A composed name, and whether it names its file by the rule of double-byte families.
  struct PrinterFontName {
    std::string post_script_name;
    bool ends_at_second_hyphen;
    auto operator<=>(const PrinterFontName&) const = default;
  };

  QuillmarkResourceFile(std::string path, bool readOnly);
  ~QuillmarkResourceFile();
  ResFileRefNum openFileForResourceAccess();
  Bytes Record(Handle fond);
  void Recall(Handle fond);  // makes what is remembered that of `fond`
  PrinterFontName ComposePrinterFontName(Handle fond, int style);
  std::string FileNameOf(const PrinterFontName& name);
  bool NamesOldBitmap(Handle fond);

  std::string path_;
  ResFileRefNum ref_num_ = -1;
  bool read_only_ = true;
  bool is_data_fork_ = false;
  int references_ = 1;
  std::map<std::string, std::string> printer_file_from_post_script_name_;
  std::optional<ResourcePlace> fond_place_;  // of the FOND last asked about
  FondStyles fond_styles_;                   // what its table says
  std::optional<bool> names_old_bitmap_;     // whether it names a FONT resource; unknown until asked
};

}  // namespace quillmark

#endif
