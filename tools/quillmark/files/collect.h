// Identifies many files on several threads and hands the results over in the order of the paths.
#ifndef QUILLMARK_TOOL_FILES_COLLECT_H_
#define QUILLMARK_TOOL_FILES_COLLECT_H_

#include <functional>
#include <memory>
#include <vector>

#include "faces/face.h"
#include "files/font_paths.h"
#include "platform/files/file_system.h"
#include "reasons/outcome.h"
#include "reasons/printer_fonts.h"

namespace quillmark::tool {

struct IdentifiedFile {
  FontPath source;
  FontArray array;  // null when the file gave no face
  std::vector<Face> faces;
  Explanation explanation;
};

// What the parts of a work share that calls IdentifyAll for each of them.
struct SharedReading {
  // Where the files are; outlives the object.
  const FileSystem* system = &SystemFiles();
  // Makes the file system through which a file is read, around that one. Called on any thread, and again when
  // a file is tried again.
  std::function<std::unique_ptr<const FileSystem>(const FontPath& source, const FileSystem& files)> wrap;
  // Called with what was read of each file with faces, on the thread that read it, before it is handed over.
  // May be null.
  std::function<void(const IdentifiedFile& file)> then;
  PrinterFontFamilies families;
};

// Calls `consume` once for each path, in order and never twice at a time, on any of the threads. `threads`
// (1 or more) counts the calling one; when fewer can be started, those do the work. At most 64 results a
// thread wait for their turn. The faces know what `needs` names. A file for which there is too little memory
// has that as its reason; one for which `consume` throws std::bad_alloc is handed over again with that reason
// and without its faces. When `consume` throws anything else, the work ends and the exception goes on.
void IdentifyAll(PathSource& paths, unsigned threads, const FaceNeeds& needs,
                 const std::function<void(IdentifiedFile&)>& consume, SharedReading& shared);

}  // namespace quillmark::tool

#endif
