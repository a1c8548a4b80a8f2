// ResourceHandle: the owner of a handle that a resource map gave out; and the types of the resources of
// fonts.
#ifndef QUILLMARK_RESOURCES_RESOURCE_HANDLE_H_
#define QUILLMARK_RESOURCES_RESOURCE_HANDLE_H_

#include "platform/byte_reader.h"
#include "platform/resource_manager/resource_manager.h"

namespace quillmark {

// The resources that fonts are made of.
inline constexpr ResType kFond = FourCharCode("FOND");  // a family
inline constexpr ResType kSfnt = FourCharCode("sfnt");  // an outline font
inline constexpr ResType kNfnt = FourCharCode("NFNT");  // a bitmap font
inline constexpr ResType kFont = FourCharCode("FONT");  // the form of bitmaps before NFNT
inline constexpr ResType kPost = FourCharCode("POST");  // a segment of a PostScript font program

// Releases a map's resource at the end of its scope.
class ResourceHandle {
 public:
  explicit ResourceHandle(Handle handle) : handle_(handle) {}
  ~ResourceHandle() { ReleaseResource(handle_); }
  ResourceHandle(const ResourceHandle&) = delete;
  ResourceHandle& operator=(const ResourceHandle&) = delete;
  Handle get() const { return handle_; }

 private:
  Handle handle_;
};

}  // namespace quillmark

#endif
