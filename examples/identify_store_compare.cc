// A host in C++14: keeps what it learns of a font file as a property list and tells at the next run whether
// the file still holds the same fonts.
//
// Usage: identify_store_compare FONT STORE
// STORE is written when it does not exist. Exits with 0 when the faces of FONT agree with the stored ones,
// with 1 when they differ, with 2 when a file cannot be used.
#include <quillmark/quillmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <ios>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

// An array belongs to the host from its creation until it is freed.
struct FreeArray {
  void operator()(QM_FontArray* array) const { QM_SpecifierFree(array); }
};
using FontArray = std::unique_ptr<QM_FontArray, FreeArray>;

using TextGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);
using NumberGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, std::uint32_t*);

struct TextRow {
  const char* label;
  TextGetter get;
};
struct ChecksumRow {
  const char* label;
  NumberGetter get;
};
constexpr TextRow kTexts[] = {{"PostScript name", QM_GetPostScriptName},
                              {"kind", QM_GetKindName},
                              {"family", QM_GetFamilyName},
                              {"version", QM_GetVersion},
                              {"foundry", QM_GetFoundryName}};
constexpr ChecksumRow kChecksums[] = {{"checksum", QM_GetQuillmarkChecksum},
                                      {"kerning checksum", QM_GetKerningChecksum}};

FontArray Identify(const char* path) {
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifier(path, 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) {
    throw std::runtime_error(std::string(path) + ": no font that can be read");
  }
  return FontArray(array);
}

void Store(const QM_FontArray* array, const char* path) {
  // The first call only asks for the size that the text needs, its NUL included.
  std::string text(1, '\0');
  std::uint32_t size = 0;
  QM_GetPropertyListRepresentation(array, &text[0], &size);
  text.resize(size);
  const bool written = QM_GetPropertyListRepresentation(array, &text[0], &size) == QM_STATUS_OK;
  text.pop_back();
  std::ofstream file(path, std::ios::binary);
  if (!written || !file.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) {
    throw std::runtime_error(std::string(path) + ": cannot be written");
  }
}

FontArray ReadBack(const char* path) {
  std::ifstream file(path, std::ios::binary);
  std::istreambuf_iterator<char> bytes(file), end;
  const std::string text(bytes, end);
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifierFromPropertyList(text.c_str(), &array) != QM_STATUS_OK) {
    throw std::runtime_error(std::string(path) + ": no stored faces");
  }
  return FontArray(array);
}

std::string Text(const QM_FontArray* array, std::uint32_t face, TextGetter get) {
  char text[512];  // stored texts keep no more of a value
  return get(array, face, text, sizeof text) == QM_STATUS_OK ? text : "(not held)";
}

struct Number {
  bool held;
  std::uint32_t value;
};

Number ReadNumber(const QM_FontArray* array, std::uint32_t face, NumberGetter get) {
  Number number{false, 0};
  number.held = get(array, face, &number.value) == QM_STATUS_OK;
  return number;
}

std::string Digits(Number number) {
  if (!number.held) return "(not held)";
  char digits[9];
  std::snprintf(digits, sizeof digits, "%08X", number.value);
  return digits;
}

// One line an answer: marked when the two do not agree, with both when they are not the same.
void Print(std::string label, bool agree, const std::string& now, const std::string& then) {
  label.resize(18, ' ');
  std::cout << (agree ? "  " : "! ") << label << now;
  if (now != then) std::cout << ", read back as " << then;
  std::cout << '\n';
}

bool SameFace(const QM_FontArray* fresh, const QM_FontArray* stored, std::uint32_t face) {
  bool same = true;
  for (const TextRow& row : kTexts) {
    const std::string now = Text(fresh, face, row.get);
    const std::string then = Text(stored, face, row.get);
    Print(row.label, now == then, now, then);
    same = same && now == then;
  }
  for (const ChecksumRow& row : kChecksums) {
    const Number now = ReadNumber(fresh, face, row.get);
    const Number then = ReadNumber(stored, face, row.get);
    // A checksum above 7FFFFFFF is read back as 7FFFFFFF: the stored text itself tells more.
    const bool agree = now.held && then.held && then.value == std::min<std::uint32_t>(now.value, 0x7FFFFFFF);
    Print(row.label, agree, Digits(now), Digits(then));
    same = same && agree;
  }
  return same;
}

bool SameFaces(const QM_FontArray* fresh, const QM_FontArray* stored) {
  std::uint32_t count = 0;
  std::uint32_t stored_count = 0;
  QM_GetFontCount(fresh, &count);
  QM_GetFontCount(stored, &stored_count);
  if (count != stored_count) {
    Print("faces", false, std::to_string(count), std::to_string(stored_count));
    return false;
  }
  bool same = true;
  for (std::uint32_t face = 0; face < count; ++face) {
    std::cout << "face " << face << '\n';
    same = SameFace(fresh, stored, face) && same;
  }
  return same;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " FONT STORE\n";
    return 2;
  }
  // The library's own exceptions come by their standard types: memory that runs out, above all.
  try {
    const FontArray fresh = Identify(argv[1]);
    if (!std::ifstream(argv[2])) Store(fresh.get(), argv[2]);
    const FontArray stored = ReadBack(argv[2]);
    const bool same = SameFaces(fresh.get(), stored.get());
    std::cout << (same ? "the stored faces agree\n" : "the stored faces differ\n");
    return same ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
}
