// Names of PostScript faces, from the clear-text header of their printer font file (Type 1, Multiple Master,
// CID), which lies beside the resource file in POST resources or in a data fork. Tests:
// tests/analysis/postscript_metadata_test.cc.
#ifndef QUILLMARK_ANALYSIS_POSTSCRIPT_METADATA_H_
#define QUILLMARK_ANALYSIS_POSTSCRIPT_METADATA_H_

#include <cstdint>

#include "analysis/face_collector.h"
#include "analysis/face_outputs.h"
#include "platform/resource_manager.h"
#include "support/om_string.h"

namespace quillmark {

class QuillmarkResourceFile;

// Reads the POST resources of the face's printer font file, failing that the data fork of that file.
// kCollected: a header was read. Values that are not found leave their outputs as they were. Of the outputs,
// platform, windows_full_name and kerning_checksum are not touched.
[[nodiscard]] CollectStatus CollectPSMetaData(QuillmarkResourceFile* resourceFile, const OmString& path,
                                              Handle fond, std::int16_t style, const FaceOutputs& outputs);
[[nodiscard]] CollectStatus CollectPSMetaDataMac(QuillmarkResourceFile* resourceFile, const OmString& path,
                                                 Handle fond, std::int16_t style, const FaceOutputs& outputs);
// Reads the file that outputs.printer_font_path names.
[[nodiscard]] CollectStatus CollectPSMetaDataFromFile(const OmString& path, const FaceOutputs& outputs);

// Gathers from each `sfnt` resource of the FOND style, stopping at the first that yields nothing.
void Collect_sfnt_MetaDataFromPrinterInfo(QuillmarkResourceFile* resourceFile, Handle fond,
                                          std::int16_t style, const FaceOutputs& outputs);

}  // namespace quillmark

#endif
