#include "platform/core_foundation/cf_url.h"

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
  if (style != kCFURLPOSIXPathStyle) return nullptr;
  return quillmark::CFRef<CFStringRef>(url->path).Yield();
}

CFStringRef CFURLGetString(CFURLRef url) { return url->string.get(); }
