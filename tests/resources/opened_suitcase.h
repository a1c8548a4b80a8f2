// A font file in a folder of its own, its resource map in the data fork, open while a test looks at it.
#ifndef QUILLMARK_TESTS_RESOURCES_OPENED_SUITCASE_H_
#define QUILLMARK_TESTS_RESOURCES_OPENED_SUITCASE_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "builders/fond_builder.h"
#include "builders/resource_fork_builder.h"
#include "builders/temp_folder.h"
#include "resources/family.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {

using testing::ElementsAre;

class OpenedSuitcase {
 public:
  explicit OpenedSuitcase(const ResourceForkBuilder& fork)
      : path_(folder_.Write("Suitcase", fork.Build())),
        file_(QuillmarkResourceFile::initWithFile(path_, true)) {}
  // A file with one FOND, of ID 128.
  explicit OpenedSuitcase(const FondBuilder& fond, const std::string& name = "Family")
      : OpenedSuitcase(ResourceForkBuilder().Add(kFond, 128, fond.Build(), name)) {}

  QuillmarkResourceFile* operator->() const { return file_.get(); }
  QuillmarkResourceFile* get() const { return file_.get(); }
  Family FamilyOf(std::int16_t id = 128) const { return {get(), get()->getResourceHandleForType(kFond, id)}; }
  const TempFolder& folder() const { return folder_; }
  const std::string& path() const { return path_; }

 private:
  TempFolder folder_;
  std::string path_;
  ResourceFileHolder file_;
};

}  // namespace quillmark

#endif
