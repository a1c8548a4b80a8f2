// Adds the faces of a resource file: one for each style of each of its families (FONDs).
#ifndef QUILLMARK_API_FAMILY_FACES_H_
#define QUILLMARK_API_FAMILY_FACES_H_

namespace quillmark {

struct Creation;
class QuillmarkResourceFile;

// For a file without FONDs (fond_count 0) one face without a family is tried.
void AddFamilyFaces(Creation& creation, QuillmarkResourceFile& resources, int fond_count);

}  // namespace quillmark

#endif
