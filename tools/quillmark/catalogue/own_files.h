// OwnFiles: the files that a catalogue is kept in, which are no members of its own roots. OtherFiles: the
// machine's file system without them. While a catalogue is open, fonts are read only through it: when a
// process closes any descriptor of a file, it loses all locks that it holds on that file, those of SQLite,
// too. Tests: tests/cli/catalogue_file_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_OWN_FILES_H_
#define QUILLMARK_TOOL_CATALOGUE_OWN_FILES_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files/file_system.h"

namespace quillmark::tool {

class OwnFiles {
 public:
  // `catalogue` is the absolute path of a database that is open, or empty for one without a path.
  explicit OwnFiles(const std::string& catalogue);

  // Whether a regular file, whose inode number this is, belongs to the catalogue: by its name, or because its
  // path leads to the same file.
  bool Contain(const std::string& path, std::int64_t inode) const;

 private:
  bool HasOwnName(const std::string& path) const;

  std::string folder_, name_;  // of the catalogue; the folder with a slash at its end
  std::vector<std::pair<std::uint64_t, std::int64_t>> locked_;  // device and inode
};

// Stands behind the name of a catalogue that is being made, and a number behind this.
inline constexpr std::string_view kNewEnding = ".new-";
bool IsNewEnding(std::string_view ending);

class OtherFiles : public FileSystem {
 public:
  // `own` outlives the object. `is_other` spares looking at paths that are known to be of other files.
  OtherFiles(const OwnFiles& own, std::function<bool(const std::string& path)> is_other)
      : own_(own), is_other_(std::move(is_other)) {}

  FileStatus Status(const std::string& path) const override;
  std::unique_ptr<OpenedFile> Open(const std::string& path) const override;
  std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view folders) const override {
    return SystemFiles().FoldersAboveWith(name, folders);
  }
  std::vector<std::string> NamesIn(const std::string& folder) const override {
    return SystemFiles().NamesIn(folder);
  }
  std::vector<std::string> AttributeNames(const std::string& path) const override {
    return SystemFiles().AttributeNames(path);
  }
  std::optional<std::string> Attribute(const std::string& path, const std::string& name) const override {
    return SystemFiles().Attribute(path, name);
  }

 private:
  bool IsOwn(const std::string& path) const;

  const OwnFiles& own_;
  const std::function<bool(const std::string& path)> is_other_;
};

}  // namespace quillmark::tool

#endif
