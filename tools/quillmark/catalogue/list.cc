// quillmark catalogue list: the faces of a catalogue, as identify writes them.
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "api/font_array.h"
#include "catalogue/catalogue.h"
#include "catalogue/kept_faces.h"
#include "catalogue/snapshot.h"

namespace quillmark::tool {

int ListCatalogue(const std::string& catalogue, const OutputForm& form) {
  const std::unique_ptr<FaceWriter> writer = MakeWriter(form, std::cout);
  Database database = OpenSnapshot(catalogue);
  const bool is_complete = TellWhetherComplete(database, catalogue);
  KeptFaces kept(database);
  while (auto file = kept.Next()) {
    std::vector<Face> faces;
    FontArray array(new QM_FontArray);
    for (FaceRow& row : file->faces) {
      if (writer->WritesArray()) {
        array->Append(std::move(*ArrayOf(row)));
      } else {
        faces.push_back(std::move(row.face));
      }
    }
    writer->Add(std::move(faces), std::move(array));
    if (!std::cout) break;
  }
  writer->Finish();
  FlushOutput();
  return is_complete ? 0 : 1;
}

}  // namespace quillmark::tool
