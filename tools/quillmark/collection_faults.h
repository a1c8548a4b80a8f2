// Why a collection gives no face, or fewer faces than it lists. Tests: tests/cli/why_test.py.
#ifndef QUILLMARK_TOOL_COLLECTION_FAULTS_H_
#define QUILLMARK_TOOL_COLLECTION_FAULTS_H_

#include <cstdint>
#include <optional>
#include <string>

#include "analysis/collection.h"
#include "outcome.h"

namespace quillmark::tool {

// Whether the file begins as a collection does.
bool IsCollection(const std::string& path);

// How many faces the header of the collection at `path` states.
std::optional<std::uint32_t> StatedFaces(const std::string& path);

// Whether the file is named as a collection and cannot be read whole, mostly for want of memory.
bool IsUnreadCollection(const std::string& path);

// Why the file at `path`, which `collection` was read from, has no face at all: it was not read, or lists
// none. Empty when it lists faces.
std::string WhyNoList(const std::string& path, TrueTypeCollectionFont& collection);

// Why a listed face (index from 0) cannot be cut out of the collection at `path`.
std::string CutFault(const std::string& path, const TrueTypeCollectionFont& collection, std::uint32_t face);

// Which listed faces give none of their own, and why: "face 3: ...; faces 4, 5: ...". Incomplete when it is
// for another cause than that they are the same as one before.
Explanation LostFaces(const std::string& path, const TrueTypeCollectionFont& collection);

}  // namespace quillmark::tool

#endif
