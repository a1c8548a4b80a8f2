#include "commands/tables_check.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "faces/stored_text.h"
#include "knowledge/classification_mappings.h"
#include "knowledge/foundry_name_table.h"
#include "knowledge/keyword_table.h"
#include "platform/core_foundation/cf_bundle.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/crc32.h"

namespace quillmark::tool {
namespace {

constexpr const char* kTables[] = {"FoundryNameTable.plist", "DefaultClassifications.plist",
                                   "KeywordTable.plist"};

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
    missing.emplace_back(kTables[0]);
  }
  if (needs.classification && CClassificationMappings::GetSharedClassificationMappings()->empty()) {
    missing.emplace_back(kTables[1]);
  }
  if (needs.styles) (void)StylesOf("", "");
  if (needs.styles && KeywordTable::Shared().empty()) missing.emplace_back(kTables[2]);
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

std::string TablesFolder() {
  const auto identifier =
      Adopt(CFStringCreateWithCString(kCFAllocatorDefault, "org.quillmark.Quillmark", kCFStringEncodingUTF8));
  const CFBundleRef bundle = CFBundleGetBundleWithIdentifier(identifier.get());
  return bundle == nullptr ? "" : bundle->folder + "/Resources";
}

std::string TablesInUse() {
  std::string text;
  for (const char* const table : kTables) {
    const std::string bytes = ReadText(SystemFiles(), TablesFolder() + '/' + table).value_or("");
    text += std::string(text.empty() ? "" : ", ") + table + ' ' + std::to_string(bytes.size()) + ' ' +
            Hex(Crc32(0, AsBytes(bytes)));
  }
  return text;
}

}  // namespace quillmark::tool
