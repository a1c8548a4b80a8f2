// ForkCarriers: which files may carry forks of the files of one folder (platform/files/font_file.h tells the
// places). The few folders that can hold any are listed once, so that files without carriers, nearly all,
// cost no question. FilesWithKnownForks: answers from such a list whether anything carries forks of one file.
#ifndef QUILLMARK_TOOL_FILES_FORK_CARRIERS_H_
#define QUILLMARK_TOOL_FILES_FORK_CARRIERS_H_

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/files/file_system.h"

namespace quillmark::tool {

class ForkCarriers {
 public:
  // `folder` is a path with a slash at its end, or empty; `names` those in it that begin with a dot or are
  // resource.frk.
  ForkCarriers(const std::string& folder, const std::vector<std::string>& names);
  // Of a folder that was not listed: every place is possible.
  explicit ForkCarriers(const std::string& folder);

  // Where forks of the file of this name may lie.
  std::vector<std::string> PlacesFor(const std::string& name) const;
  // The folder's path from the root, without "." and "..", links not looked at; with slashes at both ends.
  const std::string& normal_folder() const { return normal_folder_; }
  // The folders above that have a __MACOSX, as FileSystem tells them.
  const std::vector<std::size_t>& unzipped() const { return unzipped_; }

 private:
  struct Place {
    std::string beginning;  // what stands before the file's name
    // Names in that folder, ASCII letters in lower case as some file systems ignore case. Nothing where each
    // file is asked for: in a folder that cannot be listed, is very large, or has names beyond ASCII, of
    // which only the file system knows how case counts.
    std::optional<std::unordered_set<std::string>> names;
  };
  static void AddName(Place& place, const std::string& name);
  void AddPlace(const std::string& folder, const std::string& before_name);
  void AddUnzipped(const std::string& folder);

  std::vector<Place> places_;
  std::string normal_folder_;
  std::vector<std::size_t> unzipped_;
};

class FilesWithKnownForks : public FileSystem {
 public:
  // `path` is of a file in the folder of `carriers`. All outlive the object.
  FilesWithKnownForks(const FileSystem& files, const std::string& path, const ForkCarriers& carriers);

  FileStatus Status(const std::string& path) const override;
  std::unique_ptr<OpenedFile> Open(const std::string& path) const override { return files_.Open(path); }
  std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view folders) const override;
  std::vector<std::string> NamesIn(const std::string& folder) const override {
    return files_.NamesIn(folder);
  }
  std::vector<std::string> AttributeNames(const std::string& path) const override {
    return files_.AttributeNames(path);
  }
  std::optional<std::string> Attribute(const std::string& path, const std::string& name) const override {
    return files_.Attribute(path, name);
  }

 private:
  bool IsBeside(std::string_view path) const;

  const FileSystem& files_;
  const ForkCarriers& carriers_;
  const std::string_view folder_, name_;
  const bool has_no_forks_;  // in other files
};

}  // namespace quillmark::tool

#endif
