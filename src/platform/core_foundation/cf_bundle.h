// The library's own bundle: the folder share/quillmark beside the nearest folder named lib, lib64 or bin
// above the running library (or the program that holds it), so that the build tree and an installed tree have
// one shape and both can be moved. The environment variable QUILLMARK_BUNDLE names another folder; a process
// with raised privileges ignores it. Tests: tests/platform/core_foundation_test.cc,
// tests/support/bundle_property_list_test.cc.
#ifndef QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_BUNDLE_H_
#define QUILLMARK_PLATFORM_CORE_FOUNDATION_CF_BUNDLE_H_

#include <optional>
#include <string>
#include <utility>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/core_foundation.h"

// The URL of a bundle's folder: a text, and the file-system path that it stands for.
struct CFURLObject final : quillmark::cf::Object {
  CFURLObject(quillmark::CFRef<CFStringRef> text, quillmark::CFRef<CFStringRef> file_path)
      : Object(quillmark::cf::Type::kUrl), string(std::move(text)), path(std::move(file_path)) {}

  const quillmark::CFRef<CFStringRef> string;
  const quillmark::CFRef<CFStringRef> path;
};

struct CFBundleObject final : quillmark::cf::Object {
  explicit CFBundleObject(std::string path) : Object(quillmark::cf::Type::kBundle), folder(std::move(path)) {}

  const std::string folder;
};

namespace quillmark::cf {

// The bundle folder that belongs to a library or program at the absolute path `image`; nothing when no folder
// above it has one of the three names.
std::optional<std::string> BundleFolderBeside(const std::string& image);

}  // namespace quillmark::cf

#endif
