// Names taken from a FOND's resource name: the family's name, and Multiple Master PostScript names.
#include <optional>
#include <string>
#include <string_view>

#include "platform/text_encoding.h"
#include "resources/fond_record.h"
#include "resources/printer_font_name.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "support/platform_string.h"

namespace quillmark {
namespace {

// MacRoman, in which no text is invalid.
std::string DecodeDefault(std::string_view text) {
  return NSStringWithCStringLengthAndEncoding(text.data(), static_cast<unsigned>(text.size()),
                                              kDefaultCStringEncoding)
      .value_or(std::string());
}

}  // namespace

// Whether an entry's ID is that of a FONT, the form of bitmaps before NFNT. Remembered for the FOND last
// asked about: a family may have tens of thousands of entries, and each of its styles asks.
bool QuillmarkResourceFile::NamesOldBitmap(Handle fond) {
  Recall(fond);
  if (names_old_bitmap_) return *names_old_bitmap_;
  const Bytes record = Record(fond);
  bool found = false;
  for (int i = 0; !found; ++i) {
    const auto entry = FondEntryAt(record, i);
    if (!entry) break;
    const ResourceHandle font(getResourceHandleForType(FourCharCode("FONT"), entry->id));
    found = font.get() != nullptr;
  }
  names_old_bitmap_ = found;
  return found;
}

std::optional<std::string> QuillmarkResourceFile::getResourceNameFromFOND(Handle fond) {
  if (!fond || !*fond) return std::nullopt;
  const std::string stored = StoredResourceName(fond).value_or(std::string());
  if (!isDoubleByteFOND(fond)) return MacRomanToUtf8(stored);
  bool is_japanese = getStyleOffsetFromFOND(fond) != 0;
  // The size of the first entry decides for all of them; results rely on it. With 0 there, the first entry
  // settles the matter by itself.
  if (const auto first = FondEntryAt(Record(fond), 0)) {
    if (first->size != 0) {
      if (NamesOldBitmap(fond)) return MacRomanToUtf8(stored);
    } else {
      const ResourceHandle outline(getResourceHandleForType(FourCharCode("sfnt"), first->id));
      if (!outline.get()) return MacRomanToUtf8(stored);
      const Bytes font = HandleBytes(outline.get());
      if (font.size() > 4) is_japanese = StartsWith(font, "typ1") || IsCidFamilyName(stored);
    }
  }
  return is_japanese ? MacJapaneseToUtf8(stored) : MacRomanToUtf8(stored);
}

std::string QuillmarkResourceFile::normalizePostScriptName(const std::string& name, Handle fond, bool* isMM) {
  if (!fond || !*fond || !isMM) return name;
  UseResFile(ref_num_);
  const auto stored = StoredResourceName(fond);
  if (!stored) return name;
  std::string_view text(stored->c_str());  // C text: a zero byte ends it
  if (const auto mark = text.find("%M"); mark != std::string_view::npos) {
    *isMM = true;
    text.remove_prefix(mark + 2);
  }
  const auto mm = text.find("MM");
  if (mm == std::string_view::npos) return *isMM ? DecodeDefault(text) : name;
  *isMM = true;
  const std::string_view behind = text.substr(mm + 2);
  std::string result = DecodeDefault(text.substr(0, mm));
  if (const auto end = behind.find('_'); end != std::string_view::npos) {
    result += DecodeDefault(behind.substr(0, end));
  }
  return result;
}

std::string QuillmarkResourceFile::getPostScriptNameForFOND(Handle fond, int style) {
  if (!fond || !*fond) return {};
  UseResFile(ref_num_);
  unsigned char name[257];
  GetPrinterFontNameFromResource(fond, static_cast<unsigned char>(style), name, sizeof name);
  return std::string(AsText(Bytes(name).subspan(1, name[0])));
}

}  // namespace quillmark
