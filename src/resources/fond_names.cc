// Names taken from a FOND's resource name: the family's name, and Multiple Master PostScript names.
#include <optional>
#include <string>
#include <string_view>

#include "platform/text/text_encoding.h"
#include "resources/family.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_handle.h"

namespace quillmark {

// Whether an entry's ID is that of a FONT, the form of bitmaps before NFNT.
bool Family::NamesOldBitmap() const {
  for (int i = 0; const auto entry = FondEntryAt(record_, i); ++i) {
    const ResourceHandle font(file_->getResourceHandleForType(kFont, entry->id));
    if (font.get() != nullptr) return true;
  }
  return false;
}

const std::optional<std::string>& Family::getResourceNameFromFOND() {
  if (!resource_name_) resource_name_ = DecodeResourceName();
  return *resource_name_;
}

std::optional<std::string> Family::DecodeResourceName() const {
  if (!exists()) return std::nullopt;
  if (!isDoubleByteFOND()) return MacRomanToUtf8(stored_name_);
  bool is_japanese = getStyleOffsetFromFOND() != 0;
  // The size of the first entry decides for all of them; results rely on it. When it is 0, only the first
  // entry is looked at.
  if (const auto first = FondEntryAt(record_, 0)) {
    if (first->size != 0) {
      if (NamesOldBitmap()) return MacRomanToUtf8(stored_name_);
    } else {
      const ResourceHandle outline(file_->getResourceHandleForType(kSfnt, first->id));
      if (!outline.get()) return MacRomanToUtf8(stored_name_);
      const Bytes font = HandleBytes(outline.get());
      if (font.size() > 4) is_japanese = StartsWith(font, "typ1") || IsCidFamilyName(stored_name_);
    }
  }
  return is_japanese ? MacJapaneseToUtf8(stored_name_) : MacRomanToUtf8(stored_name_);
}

std::string Family::normalizePostScriptName(const std::string& name, bool* isMM) const {
  if (!exists() || !isMM || !map_name_) return name;
  std::string_view text(stored_name_.c_str());  // C text: a zero byte ends it
  if (const auto mark = text.find("%M"); mark != std::string_view::npos) {
    *isMM = true;
    text.remove_prefix(mark + 2);
  }
  const auto mm = text.find("MM");
  if (mm == std::string_view::npos) return *isMM ? MacRomanToUtf8(text) : name;
  *isMM = true;
  const std::string_view rest = text.substr(mm + 2);
  std::string result = MacRomanToUtf8(text.substr(0, mm));
  if (const auto end = rest.find('_'); end != std::string_view::npos) {
    result += MacRomanToUtf8(rest.substr(0, end));
  }
  return result;
}

std::string Family::getPostScriptNameForFOND(int style) const {
  return style_mapping_.GetPrinterFontName(static_cast<unsigned char>(style));
}

PrinterFontName Family::ComposePrinterFontName(int style) const {
  return {getPostScriptNameForFOND(style), isDoubleByteFOND() && getStyleOffsetFromFOND() != 0};
}

std::string Family::getPSPrinterNameForFOND(int style) const {
  if (!exists() || file_ == nullptr) return {};
  return file_->PrinterFileNameOf(ComposePrinterFontName(style));
}

std::optional<std::string> Family::PrinterFontPath(int style) const {
  if (!shouldHavePrinterFile(style) || file_ == nullptr) return std::nullopt;
  return file_->PathOfPrinterFile(getPSPrinterNameForFOND(style));
}

}  // namespace quillmark
