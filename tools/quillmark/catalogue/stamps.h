// Stamp: what a file is known by without reading it. A file whose stamp is equal is taken to hold the same
// bytes. Tests: tests/cli/catalogue_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_STAMPS_H_
#define QUILLMARK_TOOL_CATALOGUE_STAMPS_H_

#include <time.h>

#include <cstdint>
#include <string>

namespace quillmark::tool {

struct Stamp {
  static constexpr std::int64_t kAbsent = 0;
  static constexpr std::int64_t kRegular = 1;

  // kAbsent, kRegular, another number for what is no file, or a negative errno. Only of regular files the
  // rest is set.
  std::int64_t kind = kAbsent;
  std::int64_t size = 0;
  std::int64_t mtime = 0, ctime = 0;  // nanoseconds since 1970
  std::int64_t inode = 0;
  // Of the extended attributes that carry forks or Finder information; 0 without any. They matter where the
  // time of change is not looked at, as setting one changes that.
  std::int64_t attributes = 0;

  friend bool operator==(const Stamp&, const Stamp&) = default;
};

// Of copied trees and network file systems.
struct StampRules {
  bool ignore_ctime = false;
  bool ignore_inode = false;
};

std::int64_t InNanoseconds(const timespec& time);

// Of what the path leads to, links followed, without its attributes.
Stamp StampOf(const std::string& path);
// The same of a file in an opened folder, for which the system need not walk the path in full.
Stamp StampIn(int folder, const std::string& name);
std::int64_t AttributesOf(const std::string& path);
// With its attributes, as it is kept.
Stamp WholeStampOf(const std::string& path);

// Whether a path has a stamp as known. Attributes are looked up where the rules need them.
bool IsAsKnown(const std::string& path, const Stamp& found, const Stamp& known, StampRules rules);

// Whether the file may change after `time` without its stamp showing it, since clocks of file systems go in
// steps of up to two seconds.
bool IsUncertainAt(const Stamp& stamp, std::int64_t time);

}  // namespace quillmark::tool

#endif
