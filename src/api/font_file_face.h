// Adds the one face of a file whose font is in its data fork: TrueType, OpenType, or a file without
// resources.
#ifndef QUILLMARK_API_FONT_FILE_FACE_H_
#define QUILLMARK_API_FONT_FILE_FACE_H_

namespace quillmark {

struct Creation;
class QuillmarkResourceFile;

// `resources` may be null, and holds neither FOND nor POST resources.
void AddFontFileFace(Creation& creation, QuillmarkResourceFile* resources);

}  // namespace quillmark

#endif
