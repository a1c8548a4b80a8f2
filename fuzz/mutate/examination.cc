#include "examination.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include "../array_queries.h"
#include "knowledge/classification_mappings.h"
#include "knowledge/font_style_scan.h"
#include "knowledge/foundry_name_table.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

void Promise(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

double ProcessorSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Measures from its making on.
class Stopwatch {
 public:
  void FirstCallDone(bool is_read) {
    examined_.first_call = ProcessorSeconds() - start_;
    examined_.is_read = is_read;
  }
  Examined Stop() {
    examined_.all_calls = ProcessorSeconds() - start_;
    return examined_;
  }

 private:
  double start_ = ProcessorSeconds();
  Examined examined_;
};

using TextGetter = std::int32_t (*)(const QM_FontArray*, std::uint32_t, char*, std::int32_t);

void AskForFacesThatAreNone(const QM_FontArray* array, std::uint32_t count) {
  for (const std::uint32_t index : {count, std::numeric_limits<std::uint32_t>::max()}) {
    char buffer[8] = "as was";
    for (const TextGetter getter : kTextGetters) {
      bool thrown = false;
      try {
        Promise(getter(array, index, buffer, sizeof(buffer)) != QM_STATUS_OK,
                "no text of a face that is none");
      } catch (const std::out_of_range&) {
        thrown = true;
      }
      const bool throws = getter == QM_GetKindName || getter == QM_GetFamilyName;
      Promise(thrown == throws, "an exception of two getters for a face that is none");
    }
    Promise(std::string(buffer) == "as was", "outputs stay as they were");
    for (const auto getter : kNumberGetters) {
      std::uint32_t value = 0;
      Promise(getter(array, index, &value) == QM_STATUS_OUT_OF_RANGE, "no number of a face that is none");
    }
  }
}

// Buffers of exactly the size that is told, so that a sanitizer sees one byte too many.
void AskInAwkwardBuffers(const QM_FontArray* array, std::uint32_t face, TextGetter getter) {
  std::string whole(4096, '\0');
  if (getter(array, face, whole.data(), static_cast<std::int32_t>(whole.size())) != QM_STATUS_OK) return;
  whole.resize(whole.find('\0'));
  const auto exact = static_cast<std::int32_t>(whole.size()) + 1;
  for (const std::int32_t size : {0, 1, exact - 1, exact}) {
    const auto length = static_cast<std::size_t>(size);
    const auto buffer = std::make_unique<char[]>(length);
    Promise(getter(array, face, buffer.get(), size) == QM_STATUS_OK, "a short buffer is no failure");
    if (size == 0) continue;
    Promise(buffer[length - 1] == '\0', "a text ends with a NUL");
    Promise(whole.compare(0, length - 1, buffer.get()) == 0, "a short buffer gets the text's beginning");
  }
  char untouched = 'x';
  Promise(getter(array, face, &untouched, -1) == QM_STATUS_OK && untouched == 'x',
          "no buffer of a negative size");
}

void WriteInAwkwardBuffers(FormWriter writer, const QM_FontArray* array, const std::string& whole) {
  const auto exact = static_cast<std::uint32_t>(whole.size()) + 1;
  for (const std::uint32_t size : {0u, 1u, exact - 1, exact}) {
    const auto buffer = std::make_unique<char[]>(size);
    std::uint32_t length = size;
    const std::int32_t status = writer(array, buffer.get(), &length);
    Promise(status == (size < exact ? QM_STATUS_OUT_OF_RANGE : QM_STATUS_OK),
            "a stored form that does not fit");
    Promise(length == exact, "the size that a stored form needs");
    if (size == 0) continue;
    Promise(buffer[size - 1] == '\0', "a stored form ends with a NUL");
    Promise(whole.compare(0, size - 1, buffer.get()) == 0, "a short buffer gets the form's beginning");
  }
}

void AskAll(const QM_FontArray* array) {
  AskEverything(array);
  const std::uint32_t count = CountOf(array);
  for (std::uint32_t face = 0; face < count && face < kMaxFaces; ++face) {
    for (const TextGetter getter : kTextGetters) AskInAwkwardBuffers(array, face, getter);
  }
  AskForFacesThatAreNone(array, count);
  constexpr std::int16_t kFamilies[] = {-1, 0, 128, 1000};
  for (const std::int16_t id : kFamilies) {
    std::uint32_t index = 0;
    const std::int32_t status = QM_GetFontIndexForFONDResourceID(array, id, 0, &index);
    Promise(status == QM_STATUS_OK ? index < count : index == 0, "the index of a family is one of a face");
  }
}

// Both forms, and the arrays that are read from them. XML stands unescaped: names with tags may leave nothing
// to read.
void StoreAndReadBack(const QM_FontArray* array) {
  const std::string xml = Represent(QM_GetXMLRepresentation, array);
  WriteInAwkwardBuffers(QM_GetXMLRepresentation, array, xml);
  const std::string list = Represent(QM_GetPropertyListRepresentation, array);
  WriteInAwkwardBuffers(QM_GetPropertyListRepresentation, array, list);
  QM_FontArray* again = nullptr;
  Promise(QM_CreateSpecifierFromPropertyList(list.c_str(), &again) == QM_STATUS_OK,
          "a property list reads back");
  AskAll(OwnedArray(again).get());
  again = nullptr;
  if (QM_CreateSpecifierFromXML(xml.c_str(), &again) == QM_STATUS_OK) AskAll(OwnedArray(again).get());
}

template <typename Create>
Examined Examine(Create create) {
  Stopwatch watch;
  QM_FontArray* array = nullptr;
  const std::int32_t status = create(&array);
  watch.FirstCallDone(status == QM_STATUS_OK);
  Promise((status == QM_STATUS_OK) == (array != nullptr), "an array with status 0, and with no other");
  if (const OwnedArray owned(array); owned) {
    AskAll(owned.get());
    StoreAndReadBack(owned.get());
  }
  return watch.Stop();
}

}  // namespace

Examined ExamineFontFile(const std::string& path) {
  return Examine(
      [&](QM_FontArray** array) { return QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, array); });
}

Examined ExamineXml(const std::string& text) {
  return Examine([&](QM_FontArray** array) { return QM_CreateSpecifierFromXML(text.c_str(), array); });
}

Examined ExaminePropertyList(const std::string& text) {
  return Examine(
      [&](QM_FontArray** array) { return QM_CreateSpecifierFromPropertyList(text.c_str(), array); });
}

Examined ExamineTable(const std::string& file_name) {
  Stopwatch watch;
  if (file_name == "FoundryNameTable.plist") {
    const CFoundryNameTable table;
    watch.FirstCallDone(!table.empty());
    OmString name;
    (void)table.IsKnownCreatorCode(0x41444245, &name);
    (void)table.GetCanonicalFoundryName(0x41444245, "Copyright 1990 by a type foundry");
  } else if (file_name == "DefaultClassifications.plist") {
    const CClassificationMappings table;
    watch.FirstCallDone(!table.empty());
    std::vector<OmString> classes;
    table.GetListOfBuiltinClasses(&classes);
    (void)table.GetClassNameFromFontFamily("Garamond");
  } else {
    bool is_read = true;
    try {
      OmFontStyleScan::OSLoadStyleResources();
    } catch (const DataRetrieveError&) {  // the one table whose faults reach the host
      is_read = false;
    }
    watch.FirstCallDone(is_read);
    std::vector<SBuiltinStyle> styles;
    OmFontStyleScan::ScanFontForBuiltinStyles("FooMM_SB-ExtraBoldItalic", "Foo Ultra", styles);
  }
  return watch.Stop();
}

}  // namespace quillmark
