// A PostScript font header, as a data fork and as a POST resource hold it, through the gathering of names.
#include <cstdint>
#include <cstdlib>

#include "analysis/postscript_header.h"
#include "quillmark/quillmark.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const quillmark::Bytes bytes(data, size);
  for (const auto& header : {quillmark::ReadPostScriptHeader(quillmark::AsText(bytes), true),
                             quillmark::ReadPostHeader(bytes, true)}) {
    quillmark::FaceNames names;
    quillmark::OmString kind;
    quillmark::GatherPostScriptMetaData(header, QM_ATTRIBUTES_ALL, names, kind);
    // Each header gives a kind, and nothing behind a bracket is longer than a value may be.
    if (kind.empty() || names.version.size() > 3999 || names.foundry.size() > 3999) std::abort();
  }
  return 0;
}
