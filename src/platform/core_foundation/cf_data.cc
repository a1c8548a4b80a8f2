#include "platform/core_foundation/cf_data.h"

#include <new>
#include <stdexcept>

#include "platform/byte_reader.h"

using quillmark::AsBytes;
using quillmark::AsText;

CFDataRef CFDataCreate(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length) {
  if (length < 0 || (length > 0 && !bytes)) return nullptr;
  try {
    return new CFDataObject(std::string(AsText({bytes, static_cast<std::size_t>(length)})));
  } catch (const std::bad_alloc&) {
    return nullptr;
  } catch (const std::length_error&) {
    return nullptr;
  }
}

const UInt8* CFDataGetBytePtr(CFDataRef data) { return AsBytes(data->bytes).data(); }

CFIndex CFDataGetLength(CFDataRef data) { return static_cast<CFIndex>(data->bytes.size()); }
