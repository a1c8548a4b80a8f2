// The input as a whole font file, under an extension that its first byte chooses: from the path through every
// query and both stored forms.
#include <iterator>
#include <string>

#include "array_queries.h"
#include "scratch_file.h"

namespace quillmark {
namespace {

void Check(const ScratchFile& file, const std::uint8_t* data, std::size_t size) {
  file.Fill(data, size);
  const OwnedArray array = Create(file.path());
  if (!array) return;
  AskEverything(array.get());
  (void)Represent(QM_GetXMLRepresentation, array.get());
  const std::string stored = Represent(QM_GetPropertyListRepresentation, array.get());
  QM_FontArray* again = nullptr;
  if (QM_CreateSpecifierFromPropertyList(stored.c_str(), &again) != QM_STATUS_OK) std::abort();
  QM_SpecifierFree(again);
}

}  // namespace
}  // namespace quillmark

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const quillmark::ScratchFile files[] = {
      quillmark::ScratchFile("ttf"), quillmark::ScratchFile("otf"),   quillmark::ScratchFile("ttc"),
      quillmark::ScratchFile("ps"),  quillmark::ScratchFile("dfont"), quillmark::ScratchFile("pfm"),
      quillmark::ScratchFile("pfb"), quillmark::ScratchFile("suit")};
  if (size == 0) return 0;
  quillmark::Check(files[data[0] % std::size(files)], data + 1, size - 1);
  return 0;
}
