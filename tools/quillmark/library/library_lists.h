// What a library of fonts holds twice, and what in it shares a name: the lists of `quillmark same`. Each
// costs time linear in the faces, but for bringing it into order. The library must be finished and outlive
// them.
#ifndef QUILLMARK_TOOL_LIBRARY_LIBRARY_LISTS_H_
#define QUILLMARK_TOOL_LIBRARY_LIBRARY_LISTS_H_

#include <vector>

#include "library/library.h"

namespace quillmark::tool {

using Faces = std::vector<const LibraryFace*>;  // in the order of paths

// Files whose faces are all the same, or one face that files hold which differ in others.
struct Copy {
  bool whole_files = false;
  Faces faces;  // one of each file: its first, or the shared one
};

// Faces alike in one thing, parted by another: two or more parts, none empty.
using Group = std::vector<Faces>;

// By the path of the first file, whole files first.
std::vector<Copy> Copies(const Library& library);

// The lists by name leave out faces without one, and those whose name holds neither letter nor digit. They
// come by the bytes of the name.

// One PostScript name, parted by data. Data that are versions or formats of one font are in no conflict with
// each other, and data in conflict with none are left out.
std::vector<Group> Conflicts(const Library& library);
std::vector<Group> Formats(const Library& library);    // one name, foundry and version, parted by format
std::vector<Group> Versions(const Library& library);   // one name and foundry, newest version first
std::vector<Group> NearNames(const Library& library);  // names alike by the loose comparison, parted by name

}  // namespace quillmark::tool

#endif
