// A PostScript font header, as a data fork and as a POST resource hold it, through the gathering of names.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "analysis/postscript_header.h"
#include "platform/resource_manager.h"

namespace {

struct Names {
  quillmark::OmString kind, foundry, family, version, post_script, display, full;

  quillmark::FaceOutputs Outputs() {
    quillmark::FaceOutputs outputs;
    outputs.kind_name = &kind;
    outputs.names = {&foundry, &family, &version, &post_script, &display, &full, nullptr};
    return outputs;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const quillmark::Bytes bytes(data, size);
  Names from_file;
  const std::string_view header = quillmark::AsText(bytes);
  quillmark::GatherPostScriptMetaDataFromData(quillmark::LowerCasedHeader(header), header,
                                              from_file.Outputs());

  Names from_resource;
  const Handle handle = NewHandle(static_cast<Size>(size));
  std::ranges::copy(bytes, *handle);
  quillmark::GatherMetaDataFromHandle(handle, from_resource.Outputs());
  DisposeHandle(handle);
  // Each name takes a kind, and nothing behind a bracket is longer than a value may be.
  if (from_file.kind.empty() || from_file.version.size() > 3999 || from_file.foundry.size() > 3999)
    std::abort();
  return 0;
}
