// How the cost of whole requests grows with faces, bytes and text: collections, plain files, stored texts,
// and names that are searched for styles. suitcase_bench does the same for suitcases.
//   growth_bench [ROUNDS]    with 1 round only the two smallest sizes of each are run
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "bench/growth.h"
#include "bench/identify_file.h"
#include "builders/collection_builder.h"
#include "builders/exported_calls.h"
#include "builders/sfnt_builder.h"
#include "builders/temp_folder.h"
#include "quillmark/quillmark.h"

namespace {

using namespace quillmark;
using bench::GrowthTable;

std::string FaceName(int number) {
  const std::string digits = std::to_string(number);
  return "Face" + std::string(6 - digits.size(), '0') + digits;
}

SfntBuilder NamedFont(const std::string& name) {
  return SfntBuilder::CrossPlatform().MacName(1, name).MacName(4, name).MacName(6, name);
}

std::string CollectionOfFaces(int faces) {
  CollectionBuilder collection;
  for (int i = 0; i < faces; ++i) collection.Face(NamedFont(FaceName(i)));
  return collection.Build();
}

// Every face is the first one: a reader that sums each face's data anew would read this file once a face.
std::string CollectionOfOneDirectory(int faces) {
  constexpr std::size_t kOutlineBytes = 760'000;  // 1.16 MB with 100,000 faces
  CollectionBuilder collection;
  collection.Face(NamedFont("Shared").Table("glyf", std::string(kOutlineBytes, 'g')));
  for (int i = 1; i < faces; ++i) collection.SameFaceAs(0);
  return collection.Build();
}

// A font of about that many bytes.
std::string PlainFont(int bytes) {
  const std::size_t rest = NamedFont("Plain").Table("glyf", "").Build().size();
  return NamedFont("Plain").Table("glyf", std::string(static_cast<std::size_t>(bytes) - rest, 'g')).Build();
}

using MakeFile = std::string (*)(int size);

void GrowFile(GrowthTable& table, const std::string& what, const std::string& file_name,
              const std::string& unit, std::span<const int> sizes, MakeFile make) {
  const TempFolder folder;
  for (const int size : sizes) {
    const std::string path = folder.Write(file_name, make(size));
    table.Row(what, size, unit, [&] { return bench::IdentifyFile(path); });
  }
}

// A stored form: its two functions, and the marks between which one face stands in the text.
struct Form {
  const char* name;
  FormWriter write;
  std::int32_t (*read)(const char*, QM_FontArray**);
  std::string face_start, face_end;
};

// The text of one stored face, with that face again and again under other names.
std::string TextOfFaces(const Form& form, int faces) {
  const TempFolder folder;
  const OwnedArray array = Create(folder.Write("font.ttf", NamedFont(FaceName(0)).Build()));
  if (!array) std::abort();
  const std::string one = Stored(form.write, array.get());
  const std::size_t start = one.find(form.face_start);
  const std::size_t end = one.rfind(form.face_end) + form.face_end.size();
  std::string text = one.substr(0, start);
  for (int i = 0; i < faces; ++i) {
    std::string face = one.substr(start, end - start);
    for (std::size_t at = 0; (at = face.find(FaceName(0), at)) != std::string::npos; ++at) {
      face.replace(at, FaceName(0).size(), FaceName(i));
    }
    text += face;
  }
  return text + one.substr(end);
}

void GrowText(GrowthTable& table, const Form& form, std::span<const int> sizes) {
  for (const int faces : sizes) {
    const std::string text = TextOfFaces(form, faces);
    table.Row(std::string("faces read from ") + form.name, faces, "faces", [&] {
      QM_FontArray* array = nullptr;
      if (form.read(text.c_str(), &array) != QM_STATUS_OK) return 0U;
      const std::uint32_t count = CountOf(array);
      (void)QM_SpecifierFree(array);
      return count;
    });
  }
  for (const int faces : sizes) {
    QM_FontArray* array = nullptr;
    if (form.read(TextOfFaces(form, faces).c_str(), &array) != QM_STATUS_OK) std::abort();
    std::string buffer = Stored(form.write, array) + '\0';
    table.Row(std::string("faces written to ") + form.name, faces, "faces", [&] {
      auto length = static_cast<std::uint32_t>(buffer.size());
      return form.write(array, buffer.data(), &length) == QM_STATUS_OK ? CountOf(array) : 0U;
    });
    (void)QM_SpecifierFree(array);
  }
}

// `found` is the number of styles.
void GrowName(GrowthTable& table, const std::string& what, const std::string& word,
              std::span<const int> sizes) {
  constexpr std::uint32_t kMostStyles = 8;
  for (const int bytes : sizes) {
    std::string name;
    while (name.size() < static_cast<std::size_t>(bytes)) name += word;
    name.resize(static_cast<std::size_t>(bytes));
    table.Row(what, bytes, "bytes", [&] {
      std::array<std::array<char, 64>, kMostStyles> styles;
      std::array<char*, kMostStyles> pointers;
      std::transform(styles.begin(), styles.end(), pointers.begin(),
                     [](auto& style) { return style.data(); });
      std::uint32_t count = 0;
      (void)QM_GetStyles(name.c_str(), name.c_str(), kMostStyles, 64, &count, pointers.data());
      return count;
    });
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
  const auto sizes = [&](const std::vector<int>& all) {
    return rounds > 1 ? all : std::vector<int>(all.begin(), all.begin() + 2);
  };
  GrowthTable table(rounds);
  GrowFile(table, "collection, each face with a name of its own", "faces.ttc", "faces",
           sizes({1, 10, 100, 1'000, 10'000}), CollectionOfFaces);
  GrowFile(table, "collection, all faces share one directory", "faces.ttc", "faces",
           sizes({1, 10, 100, 1'000, 10'000, 100'000}), CollectionOfOneDirectory);
  GrowFile(table, "plain file", "font.ttf", "bytes",
           sizes({1'000, 10'000, 100'000, 1'000'000, 10'000'000, 100'000'000}), PlainFont);
  const Form forms[] = {
      {"XML", QM_GetXMLRepresentation, QM_CreateSpecifierFromXML, "\t<FontData>", "</FontData>\n"},
      {"a property list", QM_GetPropertyListRepresentation, QM_CreateSpecifierFromPropertyList, "\t<dict>",
       "</dict>\n"}};
  for (const Form& form : forms) GrowText(table, form, sizes({1, 10, 100, 1'000, 10'000, 100'000}));
  const std::vector<int> name_sizes = sizes({10, 100, 1'000, 10'000, 100'000});
  GrowName(table, "name of style words", "Bold Italic ", name_sizes);
  GrowName(table, "name of beginnings of style words", "Bol", name_sizes);
  GrowName(table, "name of one letter", "b", name_sizes);
  return 0;
}
