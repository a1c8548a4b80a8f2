// UpdateDatabase: reads the files that changed since the last update, and writes what they give. Tells what
// could not be read on standard error.
#ifndef QUILLMARK_TOOL_CATALOGUE_UPDATE_H_
#define QUILLMARK_TOOL_CATALOGUE_UPDATE_H_

#include "catalogue/catalogue.h"
#include "catalogue/database.h"

namespace quillmark::tool {

// Returns the exit status.
int UpdateDatabase(Database& database, const CatalogueUpdate& update, bool tells_counts);

}  // namespace quillmark::tool

#endif
