// The texts of arrays that hosts store (XML and property list), written and read.
#ifndef QUILLMARK_TOOL_FACES_STORED_TEXT_H_
#define QUILLMARK_TOOL_FACES_STORED_TEXT_H_

#include <cstdint>
#include <optional>
#include <string>

#include "faces/face.h"
#include "platform/files/file_system.h"

namespace quillmark::tool {

// Stored numbers saturate: this one stands for itself and every larger one.
inline constexpr std::uint32_t kLargestStored = 0x7FFFFFFF;

enum class StoredForm { kPropertyList, kXml };

struct StoredFaces {
  FontArray array;
  StoredForm form;
  std::size_t listed = 0;  // blocks or dictionaries in the text
  bool is_cut = false;     // the text repeats its bytes too often: only its first faces
  bool is_broken = false;  // the text ends early or lacks an end in it: faces may be missing or not whole
};

std::string XmlText(const QM_FontArray& array);
std::string PropertyListText(const QM_FontArray& array);

// The text of a file; nothing when it is no regular file that can be opened, or holds a NUL, as no text does.
// It ends where reading fails, which only `files` can tell (reasons/watched_files.h).
std::optional<std::string> ReadText(const FileSystem& files, const std::string& path);

// Nothing when the text is neither form of stored faces.
std::optional<StoredFaces> ParseStored(const std::string& text);

// The same of a file's text.
std::optional<StoredFaces> ReadStored(const FileSystem& files, const std::string& path);

// Says in sentences which parts of a text are not in its faces: faces left out, checksums at their limit.
// Empty when there are none.
std::string NotRead(const StoredFaces& stored);

}  // namespace quillmark::tool

#endif
