// QM_CreateSpecifier: from a path to an array of its faces.
// Tests: tests/api/creation_test.cc; fuzz/creation_fuzzer.cc.
#include <memory>

#include "analysis/checksum.h"
#include "analysis/font_extension.h"
#include "api/collection_faces.h"
#include "api/font_array.h"
#include "api/resource_font_faces.h"
#include "platform/forks.h"
#include "quillmark/quillmark.h"

std::int32_t QM_CreateSpecifier(const char* path, std::int32_t, std::uint32_t request,
                                QM_FontArray** outArray) {
  if (!path || !outArray) return QM_STATUS_FAILED;
  // Both forks and their checksum are looked up once for all faces.
  const quillmark::ForkLookupScope look_ups;
  const quillmark::FileChecksumScope checksums;

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
