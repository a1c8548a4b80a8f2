// A bundle folder whose tables a test writes itself, in place of the shipped ones while the object lives.
#ifndef QUILLMARK_TESTS_KNOWLEDGE_TABLE_BUNDLE_H_
#define QUILLMARK_TESTS_KNOWLEDGE_TABLE_BUNDLE_H_

#include <cstdlib>
#include <string>
#include <string_view>

#include "builders/temp_folder.h"

namespace quillmark {

class TableBundle {
 public:
  TableBundle() { ::setenv("QUILLMARK_BUNDLE", folder_.path().c_str(), 1); }
  ~TableBundle() { ::unsetenv("QUILLMARK_BUNDLE"); }
  TableBundle(const TableBundle&) = delete;
  TableBundle& operator=(const TableBundle&) = delete;

  void Write(const std::string& file_name, std::string_view list) const {
    folder_.Write("Resources/" + file_name, list);
  }

 private:
  TempFolder folder_;
};

}  // namespace quillmark

#endif
