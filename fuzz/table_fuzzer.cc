// Any bytes as one of the three knowledge tables, chosen by the first byte; whatever loads is asked a
// question.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "knowledge/classification_mappings.h"
#include "knowledge/font_style_scan.h"
#include "knowledge/foundry_name_table.h"

namespace {

// A bundle folder of this process, removed when it ends.
class Bundle {
 public:
  Bundle() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quillmark-fuzz-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    folder_ = pattern;
    std::filesystem::create_directory(folder_ / "Resources");
    ::setenv("QUILLMARK_BUNDLE", folder_.c_str(), 1);
  }
  ~Bundle() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Bundle(const Bundle&) = delete;
  Bundle& operator=(const Bundle&) = delete;

  void Write(const char* file_name, const std::string& list) const {
    std::ofstream(folder_ / "Resources" / file_name, std::ios::binary) << list;
  }

 private:
  std::filesystem::path folder_;
};

void TryFoundries() {
  const quillmark::CFoundryNameTable table;
  const quillmark::OmString text("Copyright type foundry aaaaaaaaaaaa");
  quillmark::OmString name;
  quillmark::OmString default_name;
  const bool known = table.ContainsKnownFoundryName(text, &name, &default_name);
  const quillmark::OmString canonical = table.GetCanonicalFoundryName(0, text);
  const quillmark::OmString& expected = known ? name : default_name.empty() ? "--" : default_name;
  if (canonical.str() != expected.str()) std::abort();
  constexpr std::uint32_t kCode = 0x41535046;
  quillmark::OmString maker;
  if (!table.IsKnownCreatorCode(kCode, &maker)) return;
  if (table.GetCanonicalFoundryName(kCode, text).str() != maker.str()) std::abort();
}

void TryClassifications() {
  const quillmark::CClassificationMappings table;
  std::vector<quillmark::OmString> classes;
  table.GetListOfBuiltinClasses(&classes);
  for (const quillmark::OmString& name : classes) {
    if (name.size() > 1023) std::abort();
  }
  const quillmark::OmString found = table.GetClassNameFromFontFamily("Garamond");
  if (found.size() > 1023 || (table.empty() && found != "--")) std::abort();
}

void TryKeywords() {
  try {
    quillmark::OmFontStyleScan::OSLoadStyleResources();
  } catch (const quillmark::DataRetrieveError&) {
  }
  std::vector<quillmark::SBuiltinStyle> styles;
  quillmark::OmFontStyleScan::ScanFontForBuiltinStyles("FooMM_SB-ExtraBoldItalic", "Foo Ultra", styles);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Bundle bundle;
  if (size == 0) return 0;
  const std::string list(data + 1, data + size);
  switch (data[0] % 3) {
    case 0:
      bundle.Write("FoundryNameTable.plist", list);
      TryFoundries();
      break;
    case 1:
      bundle.Write("DefaultClassifications.plist", list);
      TryClassifications();
      break;
    default:
      bundle.Write("KeywordTable.plist", list);
      TryKeywords();
  }
  return 0;
}
