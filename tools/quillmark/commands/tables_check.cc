#include "commands/tables_check.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "faces/face.h"
#include "knowledge/classification_mappings.h"
#include "knowledge/foundry_name_table.h"
#include "knowledge/keyword_table.h"

namespace quillmark::tool {
namespace {

// Discards standard output while an object of this class lives.
class SilencedOutput {
 public:
  SilencedOutput() : saved_(::dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (saved_ >= 0 && nowhere >= 0) ::dup2(nowhere, STDOUT_FILENO);
    if (nowhere >= 0) ::close(nowhere);
  }
  ~SilencedOutput() {
    std::fflush(stdout);
    if (saved_ < 0) return;
    ::dup2(saved_, STDOUT_FILENO);
    ::close(saved_);
  }
  SilencedOutput(const SilencedOutput&) = delete;
  SilencedOutput& operator=(const SilencedOutput&) = delete;

 private:
  int saved_;
};

}  // namespace

// Queries each table, so that the library loads it here and not in the middle of a result.
std::vector<std::string> MissingTables(const FaceNeeds& needs) {
  const SilencedOutput silenced;
  std::vector<std::string> missing;
  if ((needs.attributes & QM_ATTRIBUTE_FOUNDRY) && CFoundryNameTable::GetSharedFoundryNameTable()->empty()) {
    missing.emplace_back("FoundryNameTable.plist");
  }
  if (needs.classification && CClassificationMappings::GetSharedClassificationMappings()->empty()) {
    missing.emplace_back("DefaultClassifications.plist");
  }
  if (needs.styles) (void)StylesOf("", "");
  if (needs.styles && KeywordTable::Shared().empty()) missing.emplace_back("KeywordTable.plist");
  return missing;
}

void LoadTables(const FaceNeeds& needs) {
  const std::vector<std::string> missing = MissingTables(needs);
  if (missing.empty()) return;
  std::cerr << "quillmark: foundries, classes or styles stay unknown, for these tables are missing or cannot "
               "be read:";
  for (const std::string& list : missing) std::cerr << ' ' << list;
  std::cerr << '\n';
}

}  // namespace quillmark::tool
