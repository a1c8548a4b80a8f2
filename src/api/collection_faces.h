// The faces of a TrueType Collection.
#ifndef QUILLMARK_API_COLLECTION_FACES_H_
#define QUILLMARK_API_COLLECTION_FACES_H_

namespace quillmark {

struct Creation;

void AddCollectionFaces(Creation& creation);

}  // namespace quillmark

#endif
