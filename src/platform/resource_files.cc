// The Resource Manager's calls that open, close and choose files.

#include "platform/resource_files.h"

#include <algorithm>
#include <limits>

#include "platform/file_status.h"
#include "platform/text_encoding.h"

namespace quillmark {

std::vector<ResourceFiles::Opened>::iterator ResourceFiles::Find(ResFileRefNum number) {
  return std::find_if(chain.begin(), chain.end(),
                      [&](const Opened& opened) { return opened.number == number; });
}

OpenResourceFile* ResourceFiles::Current() {
  const auto found = Find(current);
  return found == chain.end() ? nullptr : found->file.get();
}

ResourceFiles& ThreadResourceFiles() {
  thread_local ResourceFiles files;
  return files;
}

namespace {

constexpr ResFileRefNum kNoFile = -1;

// Numbers of closed files come back only after all others, so that a stale one names nothing.
ResFileRefNum NextNumber(ResourceFiles& files) {
  do {
    const bool at_end = files.last_number == std::numeric_limits<ResFileRefNum>::max();
    files.last_number = at_end ? ResFileRefNum{1} : static_cast<ResFileRefNum>(files.last_number + 1);
  } while (files.Find(files.last_number) != files.chain.end());
  return files.last_number;
}

// Opens the map in `fork` and makes it the current file. The result is its number, or -1 with the error set.
ResFileRefNum OpenMap(MapOrigin origin, std::optional<Fork> fork, SInt8 permission) {
  ResourceFiles& files = ThreadResourceFiles();
  if (!fork) {
    files.error = StatusOf(origin.path).error != 0 ? fnfErr : resFNotFound;
    return kNoFile;
  }
  const bool writable = permission == fsRdWrPerm;
  if (writable && !IsWritable(origin)) {
    files.error = permErr;
    return kNoFile;
  }
  auto map = ResourceMap::Open(*std::move(fork));
  if (!map || files.chain.size() >= std::numeric_limits<ResFileRefNum>::max()) {
    files.error = mapReadErr;
    return kNoFile;
  }
  auto file = std::make_unique<OpenResourceFile>(std::move(origin), *std::move(map), writable);
  files.current = NextNumber(files);
  files.chain.push_back({files.current, std::move(file)});
  files.error = noErr;
  return files.current;
}

}  // namespace
}  // namespace quillmark

using quillmark::ResourceFiles;
using quillmark::ThreadResourceFiles;

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory) {
  if (path == nullptr || ref == nullptr) return fnfErr;
  const std::string text = reinterpret_cast<const char*>(path);
  if (!quillmark::IsValidUtf8(text)) return fnfErr;
  const quillmark::FileStatus status = quillmark::StatusOf(text);
  if (status.error != 0) return fnfErr;
  ref->path = text;
  if (isDirectory != nullptr) *isDirectory = status.directory;
  return noErr;
}

ResFileRefNum FSOpenResFile(const FSRef* ref, SInt8 permission) {
  auto found = quillmark::FindResourceFork(ref->path);
  quillmark::MapOrigin origin{ref->path, std::nullopt, {}};
  if (!found) return quillmark::OpenMap(std::move(origin), std::nullopt, permission);
  origin.carrier = found->carrier;
  origin.where = found->where;
  return quillmark::OpenMap(std::move(origin), std::move(found->fork), permission);
}

OSErr FSOpenResourceFile(const FSRef* ref, UniCharCount forkNameLength, const UniChar* /*forkName*/,
                         SInt8 permission, ResFileRefNum* refNum) {
  *refNum = quillmark::kNoFile;
  ResourceFiles& files = ThreadResourceFiles();
  if (forkNameLength != 0) {
    files.error = fnfErr;
    return files.error;
  }
  *refNum = quillmark::OpenMap({ref->path, std::nullopt, {}}, quillmark::OpenDataFork(ref->path), permission);
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
