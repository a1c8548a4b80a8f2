// The Resource Manager's calls that read and remove resources, and the Memory Manager's handles, whose data
// are never moved.

#include "platform/resource_manager/resource_manager.h"

#include <algorithm>

#include "platform/resource_manager/resource_files.h"

namespace quillmark {
namespace {

// Counts are signed 16-bit numbers: one above 0x7FFF becomes negative, so that loops over it do nothing.
std::int16_t AsCount(std::size_t count) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(count));
}

Handle Give(ResourceFiles& files, OpenResourceFile* file, std::optional<ResourceMap::Key> key) {
  if (file == nullptr || !key) {
    files.error = resNotFound;
    return nullptr;
  }
  return file->HandleFor(*key, files.load, &files.error);
}

// The block of a handle that is a map's resource; else null, with the error set.
HandleBlock* ResourceBlock(ResourceFiles& files, Handle handle) {
  const bool is_resource = handle != nullptr && BlockOf(handle)->file != nullptr;
  files.error = is_resource ? noErr : resNotFound;
  return is_resource ? BlockOf(handle) : nullptr;
}

// A Pascal string; names of more than 255 bytes do not exist.
void Assign(Str255 text, std::string_view value) {
  text[0] = static_cast<unsigned char>(value.size());
  std::copy(value.begin(), value.end(), text + 1);
}

}  // namespace

Bytes HandleBytes(Handle handle) {
  if (handle == nullptr || *handle == nullptr) return {};
  const HandleBlock& block = *BlockOf(handle);
  return AsBytes({block.data, block.size});
}

}  // namespace quillmark

using quillmark::HandleBlock;
using quillmark::OpenResourceFile;
using quillmark::ResourceBlock;
using quillmark::ResourceFiles;
using quillmark::ThreadResourceFiles;

std::int16_t Count1Types() {
  ResourceFiles& files = ThreadResourceFiles();
  files.error = noErr;
  OpenResourceFile* file = files.Current();
  return file == nullptr ? std::int16_t{0} : quillmark::AsCount(file->map().CountTypes());
}

void Get1IndType(ResType* type, std::int16_t index) {
  ResourceFiles& files = ThreadResourceFiles();
  OpenResourceFile* file = files.Current();
  std::optional<ResType> found;
  if (file != nullptr && index > 0) found = file->map().TypeAt(static_cast<std::size_t>(index) - 1);
  files.error = found ? noErr : resNotFound;
  *type = found.value_or(0);
}

std::int16_t Count1Resources(ResType type) {
  ResourceFiles& files = ThreadResourceFiles();
  files.error = noErr;
  OpenResourceFile* file = files.Current();
  return file == nullptr ? std::int16_t{0} : quillmark::AsCount(file->map().CountResources(type));
}

Handle Get1IndResource(ResType type, std::int16_t index) {
  ResourceFiles& files = ThreadResourceFiles();
  OpenResourceFile* file = files.Current();
  std::optional<quillmark::ResourceMap::Key> key;
  if (file != nullptr && index > 0) key = file->map().At(type, static_cast<std::size_t>(index) - 1);
  return quillmark::Give(files, file, key);
}

Handle Get1Resource(ResType type, ResID id) {
  ResourceFiles& files = ThreadResourceFiles();
  OpenResourceFile* file = files.Current();
  return quillmark::Give(files, file, file == nullptr ? std::nullopt : file->map().Find(type, id));
}

Handle GetResource(ResType type, ResID id) {
  ResourceFiles& files = ThreadResourceFiles();
  files.error = resNotFound;
  auto next = files.Find(files.current);
  if (next == files.chain.end()) return nullptr;
  for (++next; next != files.chain.begin();) {
    --next;
    const auto key = next->file->map().Find(type, id);
    if (key) return quillmark::Give(files, next->file.get(), key);
  }
  return nullptr;
}

void GetResInfo(Handle resource, ResID* id, ResType* type, Str255 name) {
  const HandleBlock* block = ResourceBlock(ThreadResourceFiles(), resource);
  if (block == nullptr) return;
  const quillmark::ResourceMap& map = block->file->map();
  if (id != nullptr) *id = map.ID(block->key);
  if (type != nullptr) *type = map.Type(block->key);
  if (name != nullptr) quillmark::Assign(name, map.Name(block->key).value_or(std::string()));
}

void LoadResource(Handle resource) {
  ResourceFiles& files = ThreadResourceFiles();
  HandleBlock* block = ResourceBlock(files, resource);
  if (block != nullptr) files.error = block->file->Load(*block);
}

void ReleaseResource(Handle resource) {
  HandleBlock* block = ResourceBlock(ThreadResourceFiles(), resource);
  if (block != nullptr) block->file->Forget(*block);
}

void DetachResource(Handle resource) {
  HandleBlock* block = ResourceBlock(ThreadResourceFiles(), resource);
  if (block != nullptr) static_cast<void>(block->file->Forget(*block).release());
}

void RemoveResource(Handle resource) {
  ResourceFiles& files = ThreadResourceFiles();
  HandleBlock* block = ResourceBlock(files, resource);
  if (block == nullptr || !block->file->map().Remove(block->key)) {
    files.error = rmvResFailed;
    return;
  }
  static_cast<void>(block->file->Forget(*block).release());  // an ordinary handle from here on
}

void DisposeHandle(Handle handle) {
  if (handle == nullptr) return;
  HandleBlock* block = quillmark::BlockOf(handle);
  // The resource file must not hand out the freed handle again.
  const std::unique_ptr<HandleBlock> freed(block->file != nullptr ? block->file->Forget(*block).release()
                                                                  : block);
}

Size GetHandleSize(Handle handle) { return static_cast<Size>(quillmark::HandleBytes(handle).size()); }

void GetIndString(Str255 text, std::int16_t listID, std::int16_t index) {
  quillmark::Assign(text, {});
  const Handle list = GetResource(quillmark::FourCharCode("STR#"), listID);
  if (list == nullptr) return;
  LoadResource(list);
  quillmark::ByteReader reader(quillmark::HandleBytes(list));
  const std::uint16_t count = reader.U16().value_or(0);
  if (index < 1 || index > count) return;
  std::optional<quillmark::Bytes> string;
  for (std::int16_t i = 0; i < index; ++i) {
    const auto length = reader.U8();
    string = length ? reader.Take(*length) : std::nullopt;
    if (!string) return;
  }
  quillmark::Assign(text, quillmark::AsText(*string));
}
