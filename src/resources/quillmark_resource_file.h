// QuillmarkResourceFile: one open resource map of a font file and its resources; family.h interprets FONDs.
// Every method makes this file the thread's current resource file first, so several may be open at once;
// reading looks at the file's own map only. Handles that come back belong to the map: callers release them
// (ReleaseResource) and never dispose of them. A failed platform call gives the empty value: 0, null, false.
// Methods that walk a type (getSortedResIDsForType, getSortedStyles, getPrinterFiles, purgeAllBut) release
// every resource they visit, including handles the caller still holds: hold none across such a call. For one
// thread at a time. Tests: tests/resources/; fuzz/resource_map_fuzzer.cc.
#ifndef QUILLMARK_RESOURCES_QUILLMARK_RESOURCE_FILE_H_
#define QUILLMARK_RESOURCES_QUILLMARK_RESOURCE_FILE_H_

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/resource_manager/resource_manager.h"
#include "platform/resource_manager/resource_map.h"
#include "resources/printer_font_name.h"

namespace quillmark {

// The status of activation for a file that exists.
inline constexpr OSStatus kATSInvalidFontContainerAccess = -985;

// Why the forks of a file are no resource maps; nothing for one that is missing or was not looked at.
struct MapFaults {
  std::optional<MapFault> resource_fork, data_fork;
};

// Distinct and ascending, as every list of resource IDs is handed out.
std::vector<std::int16_t> SortedIds(std::vector<std::int16_t> ids);

class QuillmarkResourceFile {
 public:
  // Opens the resource fork of `path`, failing that its data fork, as a resource map. Null when neither
  // opens. The caller owns one reference.
  static QuillmarkResourceFile* initWithFile(const std::string& path, bool readOnly);
  // The same for a file that was looked up, whose budget it charges; both outlive the object. `faults` (may
  // be null) receives why forks are no maps.
  static QuillmarkResourceFile* initWithFile(FontFile& file, bool readOnly, MapFaults* faults = nullptr);
  void retain();
  void release();  // the last one closes the map, which writes removals out when it was opened for writing
  QuillmarkResourceFile(const QuillmarkResourceFile&) = delete;
  QuillmarkResourceFile& operator=(const QuillmarkResourceFile&) = delete;

  std::string file() const { return path_; }
  bool isDataFork() const { return is_data_fork_; }
  // For counts beyond what a signed 16-bit number holds.
  const ResourceMap& map() const;

  // Linux has no font service: activate() always fails, deactivate() returns 0.
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

  // The styles of all FONDs, ascending as unsigned 16-bit numbers, handed on as signed ones.
  std::vector<std::int16_t> getSortedStyles();
  std::optional<std::string> getPrinterNameFromFontActivation(
      const std::optional<std::string>& postScriptName);
  std::vector<std::string> getPrinterFiles();
  // The file name of a printer font. The first file name found for a PostScript name is kept, also for later
  // FONDs.
  std::string PrinterFileNameOf(const PrinterFontName& name);
  // Where a printer font file of that name lies: beside this file. Nothing for an empty name, and for one
  // that holds "/": names come out of the font and must not lead elsewhere.
  std::optional<std::string> PathOfPrinterFile(const std::string& name) const;

  Budget* budget() const { return budget_; }  // null without a bound

 private:
  QuillmarkResourceFile(std::string path, bool readOnly, Budget* budget);
  ~QuillmarkResourceFile();
  ResFileRefNum openFileForResourceAccess(const FSRef& ref, MapFaults* faults);

  std::string path_;
  std::string folder_;  // of path_, with its slash; empty for a bare name
  ResFileRefNum ref_num_ = -1;
  bool read_only_ = true;
  bool is_data_fork_ = false;
  int references_ = 1;
  std::map<std::string, std::string> printer_file_from_post_script_name_;
  Budget* const budget_;
};

}  // namespace quillmark

#endif
