// ForkCarriers: which files may carry forks of the files of one folder (platform/files/font_file.h tells the
// places). The few folders that can hold any are listed once, so that files without carriers, nearly all,
// cost no question.
#ifndef QUILLMARK_TOOL_CATALOGUE_FORK_CARRIERS_H_
#define QUILLMARK_TOOL_CATALOGUE_FORK_CARRIERS_H_

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "catalogue/recording_files.h"

namespace quillmark::tool {

class ForkCarriers {
 public:
  // `folder` is a path with a slash at its end; `names` those in it that begin with a dot or are
  // resource.frk.
  ForkCarriers(const std::string& folder, const std::vector<std::string>& names);
  // Of a folder that was not listed: every place is looked at.
  explicit ForkCarriers(const std::string& folder);

  // Those that exist, for the file of this name.
  Companions Of(const std::string& name) const;

 private:
  struct Place {
    std::string beginning;  // what stands before the file's name
    // Names in that folder, in lower-case ASCII as some file systems ignore case; nothing when it cannot be
    // listed.
    std::optional<std::unordered_set<std::string>> names;
  };
  void AddPlace(const std::string& folder, const std::string& before_name);
  void AddUnzipped(const std::string& folder);

  std::vector<Place> places_;
};

}  // namespace quillmark::tool

#endif
