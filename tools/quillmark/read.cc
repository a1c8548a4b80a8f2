// quillmark read: an array from stored XML or a property list, written in any form.
#include <fstream>
#include <iostream>
#include <iterator>

#include "commands.h"
#include "output.h"
#include "platform/forks.h"
#include "reason.h"

namespace quillmark::tool {

int Read(const std::string& file, const std::string& format) {
  const auto fail = [&](const std::string& reason) {
    std::cerr << ShownPath(file) << ": " << reason << '\n';
    return 1;
  };
  if (!IsRegularFile(file)) return fail("no such file");
  std::ifstream in(file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  if (in.bad() || !in.is_open()) return fail("cannot be read");

  QM_FontArray* made = nullptr;
  if (QM_CreateSpecifierFromXML(text.c_str(), &made) != 0 &&
      QM_CreateSpecifierFromPropertyList(text.c_str(), &made) != 0) {
    return fail("neither stored XML nor a property list of fonts");
  }
  const FontArray array(made);
  const std::unique_ptr<FaceWriter> writer = MakeWriter(format, std::cout);
  writer->Add(FacesOf(array.get(), file), *array);
  writer->Finish();
  return 0;
}

}  // namespace quillmark::tool
