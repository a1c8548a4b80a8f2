// The lists of `quillmark same`: copies in a library of fonts, and faces that share a name. Each takes time
// linear in the number of faces, apart from sorting. The library must be finished and outlive the lists.
#ifndef QUILLMARK_TOOL_LIBRARY_LIBRARY_LISTS_H_
#define QUILLMARK_TOOL_LIBRARY_LIBRARY_LISTS_H_

#include <vector>

#include "library/library.h"

namespace quillmark::tool {

using Faces = std::vector<const LibraryFace*>;  // in the order of paths

// Files whose faces are all the same; or one face that is in several files whose other faces differ.
struct Copy {
  bool whole_files = false;
  Faces faces;  // one of each file: its first, or the shared one
};

// Faces that share one property (such as the name), divided by another: two or more parts, none empty.
using Group = std::vector<Faces>;

// By the path of the first file, whole files first.
std::vector<Copy> Copies(const Library& library);

// The lists by name leave out faces without one, and those whose name holds neither letter nor digit. They
// are sorted by the bytes of the name.

// One PostScript name, divided by font data. Data that are versions or formats of one font do not conflict
// with each other; data that conflict with none are left out.
std::vector<Group> Conflicts(const Library& library);
std::vector<Group> Formats(const Library& library);    // one name, foundry and version, parted by format
std::vector<Group> Versions(const Library& library);   // one name and foundry, newest version first
std::vector<Group> NearNames(const Library& library);  // names alike by the loose comparison, parted by name

}  // namespace quillmark::tool

#endif
