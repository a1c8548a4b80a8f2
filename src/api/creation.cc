// QM_CreateSpecifier: from a path to an array of its faces.
// Tests: tests/api/creation_test.cc; fuzz/creation_fuzzer.cc.
#include <memory>

#include "analysis/checksum.h"
#include "analysis/font_extension.h"
#include "analysis/printer_font.h"
#include "api/collection_faces.h"
#include "api/font_array.h"
#include "api/resource_font_faces.h"
#include "platform/forks.h"
#include "quillmark/quillmark.h"

std::int32_t QM_CreateSpecifier(const char* path, std::int32_t, std::uint32_t request,
                                QM_FontArray** outArray) {
  if (!path || !outArray) return QM_STATUS_FAILED;
  // What the faces share is looked up, summed and parsed once.
  const quillmark::ForkLookupScope look_ups;
  const quillmark::ChecksumScope checksums;
  const quillmark::PrinterFontScope printer_fonts;

  auto faces = std::make_unique<QM_FontArray>();
  if (quillmark::fontTypeFromExtension(path) == quillmark::kExtensionTtc) {
    quillmark::AppendCollectionFaces(path, request, *faces);
  } else {
    quillmark::AppendResourceFontFaces(path, request, *faces);
  }
  if (faces->size() == 0) return QM_STATUS_FAILED;
  faces->RemoveDups();
  *outArray = faces.release();
  return QM_STATUS_OK;
}
