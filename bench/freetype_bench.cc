// FreeType opening every face of the files that a list names, one path a line: a yardstick for how long a
// library takes that reads tables and sums no bytes. Prints seconds, faces, and files with a face.
//   freetype_bench LIST
#include <ft2build.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench/measure.h"
#include FT_FREETYPE_H

namespace {

// Faces that FreeType opened.
std::uint32_t OpenFaces(FT_Library library, const std::string& path) {
  std::uint32_t opened = 0;
  FT_Long faces = 1;
  for (FT_Long i = 0; i < faces; ++i) {
    FT_Face face = nullptr;
    if (FT_New_Face(library, path.c_str(), i, &face) != 0) continue;
    faces = face->num_faces;
    ++opened;
    FT_Done_Face(face);
  }
  return opened;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> files;
  std::ifstream list(argc == 2 ? argv[1] : "");
  for (std::string path; std::getline(list, path);) files.push_back(path);
  FT_Library library = nullptr;
  if (files.empty() || FT_Init_FreeType(&library) != 0) {
    std::fprintf(stderr, "usage: freetype_bench LIST\n");
    return 2;
  }
  std::uint32_t faces = 0;
  std::uint32_t files_with_faces = 0;
  (void)OpenFaces(library, files.front());
  const double seconds = quillmark::bench::Seconds([&] {
    for (const std::string& path : files) {
      const std::uint32_t opened = OpenFaces(library, path);
      faces += opened;
      files_with_faces += opened > 0 ? 1 : 0;
    }
  });
  FT_Done_FreeType(library);
  std::printf("%.6f %u %u\n", seconds, faces, files_with_faces);
  return 0;
}
