// Adds the faces of a TrueType Collection. Tests: tests/api/creation_test.cc.
#ifndef QUILLMARK_API_COLLECTION_FACES_H_
#define QUILLMARK_API_COLLECTION_FACES_H_

namespace quillmark {

struct Creation;

void AddCollectionFaces(Creation& creation);

}  // namespace quillmark

#endif
