// RecordingFiles: a file system that keeps the stamp of every path that an answer depended on, those of
// absent files, too. Left out are the file itself and the usual places of its forks, which root_scan.h looks
// after: what is known of the file from there is not asked for again. For one file at a time, on one thread.
#ifndef QUILLMARK_TOOL_CATALOGUE_RECORDING_FILES_H_
#define QUILLMARK_TOOL_CATALOGUE_RECORDING_FILES_H_

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/stamps.h"
#include "platform/files/file_system.h"

namespace quillmark::tool {

using Companions = std::map<std::string, Stamp>;  // by path

// The questions about one file.
class Recording {
 public:
  // The stamp is from before anything is asked.
  Recording(std::string path, const Stamp& stamp) : path_(std::move(path)), stamp_(stamp) {}

  const std::string& path() const { return path_; }
  const Stamp& stamp() const { return stamp_; }
  void NoteAttributes(bool has_any) { has_no_attributes_ = !has_any; }
  // False also when nobody asked.
  bool has_no_attributes() const { return has_no_attributes_; }

  // Before the question is asked: what comes between is then found by the next update.
  void Note(const std::string& path);
  // Of a place inside the file, where only some file systems show forks; after the question.
  void NoteInside(const std::string& path, int error);
  bool IsInside(const std::string& path) const { return path.starts_with(path_ + '/'); }
  // `found` are those above that have a __MACOSX.
  void NoteFolders(std::string_view folders, const std::vector<std::size_t>& found) {
    folders_.emplace(folders, std::set(found.begin(), found.end()));
  }
  // All that the answer depended on besides the file and its own forks.
  Companions Taken();

 private:
  bool IsOwnFork(const std::string& path) const;

  const std::string path_;
  const Stamp stamp_;
  bool has_no_attributes_ = false;
  Companions asked_;
  std::map<std::string, std::set<std::size_t>> folders_;
};

class RecordingFiles : public FileSystem {
 public:
  // Both outlive the object.
  RecordingFiles(const FileSystem& files, Recording& recording) : files_(files), recording_(recording) {}

  FileStatus Status(const std::string& path) const override;
  std::unique_ptr<OpenedFile> Open(const std::string& path) const override;
  std::vector<std::size_t> FoldersAboveWith(std::string_view name, std::string_view folders) const override;
  std::vector<std::string> NamesIn(const std::string& folder) const override {
    return files_.NamesIn(folder);
  }
  std::vector<std::string> AttributeNames(const std::string& path) const override;
  std::optional<std::string> Attribute(const std::string& path, const std::string& name) const override;

 private:
  const FileSystem& files_;
  Recording& recording_;
};

}  // namespace quillmark::tool

#endif
