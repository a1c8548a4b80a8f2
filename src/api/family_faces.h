// The faces of a resource file: of each style of each of its families (FONDs).
#ifndef QUILLMARK_API_FAMILY_FACES_H_
#define QUILLMARK_API_FAMILY_FACES_H_

namespace quillmark {

struct Creation;
class QuillmarkResourceFile;

// A file without FONDs (fond_count 0) gives a face of no family, if any.
void AddFamilyFaces(Creation& creation, QuillmarkResourceFile& resources, int fond_count);

}  // namespace quillmark

#endif
