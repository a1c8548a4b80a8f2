// The Resource Manager's calls that open, close and choose files.
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "platform/resource_manager/resource_files.h"
#include "platform/resource_manager/resource_manager.h"
#include "platform/text/text_encoding.h"

namespace quillmark {
namespace {

constexpr ResFileRefNum kNoFile = -1;

// Numbers of closed files are reused only after all others, so that a stale number refers to no file.
ResFileRefNum NextNumber(ResourceFiles& files) {
  do {
    const bool at_end = files.last_number == std::numeric_limits<ResFileRefNum>::max();
    files.last_number = at_end ? ResFileRefNum{1} : static_cast<ResFileRefNum>(files.last_number + 1);
  } while (files.Find(files.last_number) != files.chain.end());
  return files.last_number;
}

// Opens the map in `fork` and makes it the current file. The result is its number, or -1 with the error set.
ResFileRefNum OpenMap(FontFile& file, MapOrigin origin, std::optional<Fork> fork, SInt8 permission) {
  ResourceFiles& files = ThreadResourceFiles();
  files.map_fault.reset();
  const auto fail = [&files](OSErr error) {
    files.error = error;
    return kNoFile;
  };
  if (!fork) return fail(file.Status().error != 0 ? fnfErr : resFNotFound);
  const bool writable = permission == fsRdWrPerm;
  if (writable && !IsWritable(origin)) return fail(permErr);
  MapFault fault;
  auto map = ResourceMap::Open(*std::move(fork), file.budget(), &fault);
  if (!map) files.map_fault = fault;
  if (!map || files.chain.size() >= std::numeric_limits<ResFileRefNum>::max()) return fail(mapReadErr);
  auto opened = std::make_unique<OpenResourceFile>(std::move(origin), *std::move(map), writable);
  files.current = NextNumber(files);
  files.chain.push_back({files.current, std::move(opened)});
  files.error = noErr;
  return files.current;
}

// A file of the machine, with what it is asked through.
struct NamedFile {
  explicit NamedFile(std::string path) : file(access, std::move(path)) {}
  FileAccess access;
  FontFile file;
};

}  // namespace
}  // namespace quillmark

using quillmark::ResourceFiles;
using quillmark::ThreadResourceFiles;

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory) {
  if (path == nullptr || ref == nullptr) return fnfErr;
  auto named = std::make_shared<quillmark::NamedFile>(reinterpret_cast<const char*>(path));
  const OSStatus status = FSFileMakeRef(named->file, ref, isDirectory);
  if (status == noErr) ref->file = {std::move(named), ref->file.get()};
  return status;
}

OSStatus FSFileMakeRef(quillmark::FontFile& file, FSRef* ref, Boolean* isDirectory) {
  if (!quillmark::IsValidUtf8(file.path()) || file.Status().error != 0) return fnfErr;
  ref->file = {std::shared_ptr<void>(), &file};
  if (isDirectory != nullptr) *isDirectory = file.Status().directory;
  return noErr;
}

ResFileRefNum FSOpenResFile(const FSRef* ref, SInt8 permission) {
  quillmark::FontFile& file = *ref->file;
  quillmark::MapOrigin origin{file.path(), std::nullopt, {}};
  std::optional<quillmark::Fork> fork;
  if (const auto& found = file.ResourceFork()) {
    origin.carrier = found->carrier;
    origin.where = found->where;
    fork = found->fork;
  }
  return quillmark::OpenMap(file, std::move(origin), std::move(fork), permission);
}

OSErr FSOpenResourceFile(const FSRef* ref, UniCharCount forkNameLength, const UniChar* /*forkName*/,
                         SInt8 permission, ResFileRefNum* refNum) {
  *refNum = quillmark::kNoFile;
  ResourceFiles& files = ThreadResourceFiles();
  if (forkNameLength != 0) return files.error = fnfErr;
  quillmark::FontFile& file = *ref->file;
  *refNum = quillmark::OpenMap(file, {file.path(), std::nullopt, {}}, file.DataFork(), permission);
  return files.error;
}

void CloseResFile(ResFileRefNum refNum) {
  ResourceFiles& files = ThreadResourceFiles();
  const auto closed = files.Find(refNum);
  if (closed == files.chain.end()) {
    files.error = resFNotFound;
    return;
  }
  files.error = closed->file->Save();
  const auto after = files.chain.erase(closed);
  // The file opened before it becomes current.
  if (files.current == refNum)
    files.current = after == files.chain.begin() ? ResFileRefNum{0} : std::prev(after)->number;
}

void UseResFile(ResFileRefNum refNum) {
  ResourceFiles& files = ThreadResourceFiles();
  const bool known = refNum == 0 || files.Find(refNum) != files.chain.end();
  files.error = known ? noErr : resFNotFound;
  if (known) files.current = refNum;
}

OSErr ResError() { return ThreadResourceFiles().error; }

void SetResLoad(Boolean load) {
  ResourceFiles& files = ThreadResourceFiles();
  files.load = load != 0;
  files.error = noErr;
}
