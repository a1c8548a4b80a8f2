// The exported query that reads a name out of sfnt bytes, without an array.
// Tests: tests/api/queries_test.cc; tests/c/contract.c.
#include <string>

#include "analysis/name_table.h"
#include "api/buffers.h"
#include "quillmark/quillmark.h"

void QM_GetPostScriptNameFromNamesTable(const char* data, std::uint32_t size, void* resourceFile,
                                        char** fondHandle, std::int32_t, char* buffer,
                                        std::int32_t bufferSize) {
  if (!data || !resourceFile || !fondHandle || !buffer) return;
  quillmark::Budget budget(size);
  try {
    const quillmark::SfntData font(quillmark::AsBytes({data, size}), &budget);
    const std::string name = quillmark::getPostScriptNameFromNamesTable(font);
    if (!name.empty()) quillmark::CopyOut(name, buffer, bufferSize);
  } catch (const quillmark::BudgetSpent&) {
    // The table repeats its bytes too often: no name.
  }
}
