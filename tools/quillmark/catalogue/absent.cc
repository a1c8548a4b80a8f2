// Stands in for the catalogue in a build without SQLite.
#include <stdexcept>

#include "catalogue/catalogue.h"

namespace quillmark::tool {
namespace {

[[noreturn]] void ThrowAbsent() {
  throw std::runtime_error("this build has no catalogue, as it was built without SQLite");
}

}  // namespace

int UpdateCatalogue(const CatalogueUpdate& /*update*/) { ThrowAbsent(); }
int ListCatalogue(const std::string& /*catalogue*/, const OutputForm& /*form*/) { ThrowAbsent(); }
int TellChanges(const ChangesQuery& /*query*/) { ThrowAbsent(); }
int TellCatalogue(const std::string& /*catalogue*/, const std::string& /*format*/) { ThrowAbsent(); }
int VerifyCatalogue(const CatalogueCheck& /*check*/) { ThrowAbsent(); }
int FindNames(const NameSearch& /*search*/) { ThrowAbsent(); }
FilesOutcome AddFromCatalogue(const std::string& /*catalogue*/, Library& /*library*/,
                              std::vector<std::string>& /*roots*/) {
  ThrowAbsent();
}
int MergeCatalogues(const CatalogueMerge& /*merge*/) { ThrowAbsent(); }
std::string CatalogueSupport() { return {}; }

}  // namespace quillmark::tool
