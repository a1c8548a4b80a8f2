// CollectMetaData: everything that one face's own data say about it. Called once a face by creation.
// Tests: tests/api/creation_test.cc; fuzz/sfnt_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_FACE_COLLECTOR_H_
#define QUILLMARK_ANALYSIS_FACE_COLLECTOR_H_

#include <cstdint>

#include "analysis/face_outputs.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

class QuillmarkResourceFile;

// What the collectors answer.
enum CollectStatus : int {
  kCollected = 0,
  kNoFontData = 3,          // no sfnt bytes, or no usable name table
  kPrinterFontMissing = 6,  // the outlines of a PostScript face are not where its family names them
  kUndecided = -1,          // no platform can be told, or no PostScript header read
};

// `resourceFile` and `fond` may be null: the face is then read from the path's data fork.
[[nodiscard]] CollectStatus CollectMetaData(QuillmarkResourceFile* resourceFile, const OmString& path,
                                            Handle fond, std::int16_t style, const FaceOutputs& outputs);

}  // namespace quillmark

#endif
