#include "support/resource_location.h"

#include "support/property_list_file.h"

namespace quillmark {

CFRef<CFDataRef> LoadBundleFile(const char* file_name) {
  constexpr char kBundleIdentifier[] = "org.quillmark.Quillmark";
  const auto identifier =
      Adopt(CFStringCreateWithCString(kCFAllocatorDefault, kBundleIdentifier, kCFStringEncodingUTF8));
  const CFBundleRef bundle = CFBundleGetBundleWithIdentifier(identifier.get());
  if (!bundle) return {};
  const auto bundle_url = Adopt(CFBundleCopyBundleURL(bundle));
  if (!bundle_url) return {};
  const auto bundle_path = Adopt(CFURLCopyFileSystemPath(bundle_url.get(), kCFURLPOSIXPathStyle));
  if (!bundle_path) return {};
  const auto resources_url = Adopt(CFBundleCopyResourcesDirectoryURL(bundle));
  if (!resources_url) return {};

  // The resources URL is relative to the bundle and ends in a slash; it is taken as it stands, escapes
  // included.
  const auto path = Adopt(CFStringCreateMutableCopy(kCFAllocatorDefault, 0, bundle_path.get()));
  CFStringAppendCString(path.get(), "/", kCFStringEncodingUTF8);
  CFStringAppend(path.get(), CFURLGetString(resources_url.get()));
  CFStringAppendCString(path.get(), file_name, kCFStringEncodingUTF8);
  return Adopt(NCFUtils::NCFCreateCFDataRefFromPath(path.get()));
}

CFRef<CFPropertyListRef> LoadBundlePropertyList(const char* file_name, CFOptionFlags mutability) {
  const auto bytes = LoadBundleFile(file_name);
  return Adopt(NCFUtils::ParsePropertyList(bytes.get(), mutability));
}

}  // namespace quillmark
