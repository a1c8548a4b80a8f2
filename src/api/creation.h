// CreateFaces: reads the faces of one font file from the given file system; returns them and the faults of
// those that could not be read. QM_CreateSpecifier passes the machine's file system. Tests:
// tests/api/creation_test.cc; fuzz/creation_fuzzer.cc.
#ifndef QUILLMARK_API_CREATION_H_
#define QUILLMARK_API_CREATION_H_

#include <cstdint>
#include <string>

#include "api/creation_context.h"
#include "platform/files/file_system.h"

namespace quillmark {

CreationResult CreateFaces(const FileSystem& system, const std::string& path, std::uint32_t request);

}  // namespace quillmark

#endif
