#include "platform/core_foundation/cf_bundle.h"

#include <dlfcn.h>
#include <sys/auxv.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <string_view>

namespace quillmark::cf {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view kIdentifier = u"org.quillmark.Quillmark";

// The file that holds this code, without symbolic links; empty when the loader cannot say.
std::string OwnImage() {
  Dl_info own{};
  Dl_info program{};
  if (dladdr(reinterpret_cast<const void*>(&OwnImage), &own) == 0 || !own.dli_fname) return {};
  // The loader knows the program itself only by the name that it was called by.
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the system gives the address as a number
  const bool is_program = dladdr(reinterpret_cast<const void*>(getauxval(AT_PHDR)), &program) != 0 &&
                          program.dli_fbase == own.dli_fbase;
  std::error_code error;
  const fs::path image = fs::canonical(is_program ? "/proc/self/exe" : own.dli_fname, error);
  return error ? std::string() : image.string();
}

std::optional<std::string> CurrentBundleFolder() {
  const char* const named = secure_getenv("QUILLMARK_BUNDLE");
  const auto folder = named && *named ? std::optional<std::string>(named) : BundleFolderBeside(OwnImage());
  std::error_code error;
  return folder && fs::is_directory(*folder, error) ? folder : std::nullopt;
}

CFURLRef MakeUrl(const std::string& text, const std::string& path) {
  auto string = Adopt(CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
  auto file_path = Adopt(CFStringCreateWithCString(kCFAllocatorDefault, path.c_str(), kCFStringEncodingUTF8));
  if (!string || !file_path) return nullptr;  // a folder whose name is no text has no URL
  return new CFURLObject(std::move(string), std::move(file_path));
}

}  // namespace

std::optional<std::string> BundleFolderBeside(const std::string& image) {
  for (fs::path folder = fs::path(image).parent_path(); folder.has_filename();
       folder = folder.parent_path()) {
    const fs::path name = folder.filename();
    if (name == "lib" || name == "lib64" || name == "bin") {
      return (folder.parent_path() / "share" / "quillmark").string();
    }
  }
  return std::nullopt;
}

}  // namespace quillmark::cf

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
  if (style != kCFURLPOSIXPathStyle) return nullptr;
  return quillmark::CFRef<CFStringRef>(url->path).Yield();
}

CFStringRef CFURLGetString(CFURLRef url) { return url->string.get(); }

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
  if (!identifier || identifier->units() != quillmark::cf::kIdentifier) return nullptr;
  const auto folder = quillmark::cf::CurrentBundleFolder();
  if (!folder) return nullptr;

  // One object for each folder that was ever the bundle's, as callers keep theirs without owning it.
  static std::mutex lock;
  static auto* const bundles = new std::map<std::string, CFBundleRef>;
  const std::lock_guard guard(lock);
  CFBundleRef& bundle = (*bundles)[*folder];
  if (!bundle) {
    bundle = new CFBundleObject(*folder);
    bundle->MakeProcessLong();
  }
  return bundle;
}

// Callers ask for its path; the text is not escaped.
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  return quillmark::cf::MakeUrl(bundle->folder + '/', bundle->folder);
}

// Relative to the bundle, and the same in every one.
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef /*bundle*/) {
  return quillmark::cf::MakeUrl("Resources/", "Resources");
}
