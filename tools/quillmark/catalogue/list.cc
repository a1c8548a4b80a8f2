// quillmark catalogue list: the faces of a catalogue, as identify writes them.
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "api/font_array.h"
#include "catalogue/catalogue.h"
#include "catalogue/kept_faces.h"
#include "catalogue/snapshot.h"
#include "catalogue/spooled_output.h"

namespace quillmark::tool {
namespace {

// False where the catalogue lacks files.
bool AddAll(const std::string& catalogue, FaceWriter& writer) {
  Database database = OpenSnapshot(catalogue);
  const bool is_complete = TellWhetherComplete(database, catalogue);
  KeptFaces kept(database);
  while (auto file = kept.Next()) {
    std::vector<Face> faces;
    FontArray array(new QM_FontArray);
    for (FaceRow& row : file->faces) {
      if (writer.WritesArray()) {
        array->Append(std::move(*ArrayOf(row)));
      } else {
        faces.push_back(std::move(row.face));
      }
    }
    writer.Add(std::move(faces), std::move(array));
    if (!std::cout) break;
  }
  return is_complete;
}

}  // namespace

int ListCatalogue(const std::string& catalogue, const OutputForm& form) {
  const std::unique_ptr<FaceWriter> writer = MakeWriter(form, std::cout);
  SpooledOutput output;
  const bool is_complete = AddAll(catalogue, *writer);
  output.Finish();
  writer->Finish();
  FlushOutput();
  return is_complete ? 0 : 1;
}

}  // namespace quillmark::tool
