#include "tables_check.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "face.h"
#include "support/resource_location.h"

namespace quillmark::tool {
namespace {

// Standard output goes nowhere while one of these lives.
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

bool IsThere(const char* list) {
  return static_cast<bool>(LoadBundlePropertyList(list, kCFPropertyListImmutable));
}

}  // namespace

void LoadTables() {
  std::string missing;
  {
    const SilencedOutput silenced;
    for (const char* list :
         {"FoundryNameTable.plist", "DefaultClassifications.plist", "KeywordTable.plist"}) {
      if (!IsThere(list)) missing += (missing.empty() ? "" : ", ") + std::string(list);
    }
    // The library loads its tables on first use: here, and not in the middle of a result.
    (void)ClassOf("", nullptr);
    (void)StylesOf("", "");
  }
  if (!missing.empty()) {
    std::cerr << "quillmark: tables are missing or cannot be read (" << missing
              << "): foundries, classes or styles stay unknown\n";
  }
}

}  // namespace quillmark::tool
