#include "support/property_list_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "platform/files/font_file.h"

namespace quillmark::NCFUtils {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, CloseFile>;

// The path in UTF-8; null when there is too little memory. Empty, which names no file, for a path that has no
// such form.
std::unique_ptr<char[]> Utf8Path(CFStringRef path) {
  const CFIndex size = CFStringGetMaximumSizeForEncoding(CFStringGetLength(path), kCFStringEncodingUTF8) + 1;
  std::unique_ptr<char[]> text(new (std::nothrow) char[static_cast<std::size_t>(size)]);
  if (text && !CFStringGetCString(path, text.get(), size, kCFStringEncodingUTF8)) text[0] = '\0';
  return text;
}

// fopen with "rb" or "wb" would wait at a FIFO for its other end; opening a device for reading may already do
// something to it.
FilePtr Open(const char* path, int flags, const char* mode, bool must_be_regular) {
  if (must_be_regular && !IsRegularFile(path)) return nullptr;
  constexpr mode_t kReadWriteForAll = 0666;  // less the process's mask
  const int descriptor = open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kReadWriteForAll);
  if (descriptor < 0) return nullptr;
  struct stat status {};
  const bool is_taken = !must_be_regular || (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode));
  FilePtr file(is_taken ? fdopen(descriptor, mode) : nullptr);
  if (!file) close(descriptor);
  return file;
}

void Print(const char* message) { std::fputs(message, stdout); }

bool FailWriting(const char* message) {
  std::puts(message);  // on a line of its own
  return false;
}

bool IsEmpty(CFStringRef path) { return !path || CFStringGetLength(path) == 0; }

}  // namespace

int GetFileLengthAndRewind(std::FILE* f, std::uint32_t* length) {
  constexpr off_t kMost = std::numeric_limits<std::uint32_t>::max();
  *length = 0;
  if (!f) return -1;
  int error = 0;
  if (fseeko(f, 0, SEEK_END) == 0) {
    *length = static_cast<std::uint32_t>(std::clamp<off_t>(ftello(f), 0, kMost));
  } else {
    error = errno;
  }
  if (fseeko(f, 0, SEEK_SET) != 0) error = errno;
  return error;
}

CFDataRef NCFCreateCFDataRefFromPath(CFStringRef path) {
  if (!path) return nullptr;
  const auto name = Utf8Path(path);
  if (!name) {
    Print("NCFUtils::NCFCreateCFDataRefFromPath: failed to allocate buffer for path string as utf8");
    return nullptr;
  }
  const FilePtr file = Open(name.get(), O_RDONLY, "rb", true);
  if (!file) return nullptr;

  std::uint32_t length = 0;
  if (GetFileLengthAndRewind(file.get(), &length) != 0 || length == 0) {
    Print("NCFUtils::NCFCreateCFDataRefFromPath:  error getting file length & rewinding file ");
    return nullptr;
  }
  std::string bytes;  // the data object takes it over: a copy would double the memory of a large table
  try {
    bytes.resize(length);
  } catch (const std::bad_alloc&) {
    Print("NCFUtils::NCFCreateCFDataRefFromPath:  failed to create buffer.");
    return nullptr;
  }
  if (std::fread(bytes.data(), 1, length, file.get()) < length) {
    Print("NCFUtils::NCFCreateCFDataRefFromPath: error reading file ");
    return nullptr;
  }
  return new CFDataObject(std::move(bytes));
}

CFPropertyListRef NCFCreateCFPropertyListFromPath(CFStringRef path, CFOptionFlags mutability) {
  if (IsEmpty(path)) return nullptr;
  const auto data = Adopt(NCFCreateCFDataRefFromPath(path));
  return ParsePropertyList(data.get(), mutability);
}

CFPropertyListRef ParsePropertyList(CFDataRef data, CFOptionFlags mutability) {
  if (!data) return nullptr;
  CFRef<CFStringRef> error;
  const CFPropertyListRef list =
      CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, mutability, error.Receive());
  if (error) Print("NCFUtils::NCFCreateCFPropertyListFromPath:  error returned.");
  return list;
}

bool NCFWriteCFDataRefToXMLFile(CFDataRef data, CFStringRef path) {
  if (IsEmpty(path)) return false;
  const auto name = Utf8Path(path);
  const FilePtr file = name ? Open(name.get(), O_WRONLY | O_CREAT | O_TRUNC, "wb", false) : nullptr;
  if (!file) return FailWriting("*** NCFUtils::NCFWriteCFDataRefToXMLFile:  Error opening file for writing.");

  const UInt8* const bytes = data ? CFDataGetBytePtr(data) : nullptr;
  if (!bytes) {
    return FailWriting("*** NCFUtils::NCFWriteCFDataRefToXMLFile:  Failed to create buffer from CFDataRef.");
  }
  // Unbuffered, so that a failed write shows in the count and not only at closing.
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  const auto length = static_cast<std::size_t>(CFDataGetLength(data));
  if (std::fwrite(bytes, 1, length, file.get()) < length) {
    return FailWriting("*** NCFUtils::NCFWriteCFDataRefToXMLFile:  Error writing to file.");
  }
  return true;
}

bool NCFWriteCFPropertyListToXMLFile(CFPropertyListRef plist, CFStringRef path) {
  if (IsEmpty(path)) return false;
  const auto data = Adopt(CFPropertyListCreateXMLData(kCFAllocatorDefault, plist));
  if (!data) {
    return FailWriting(
        "*** NCFUtils::NCFWriteCFPropertyListToXMLFile:  Failed to create XML CFData from property list for "
        "writing.");
  }
  return NCFWriteCFDataRefToXMLFile(data.get(), path);
}

}  // namespace quillmark::NCFUtils
