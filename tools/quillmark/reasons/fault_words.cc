#include "reasons/fault_words.h"

#include <array>

#include "text/printable.h"

namespace quillmark::tool {
namespace {

std::string Number(std::uint64_t number) { return std::to_string(number); }

std::string Counted(std::uint64_t count) { return Number(count) + (count == 1 ? " byte" : " bytes"); }

std::string Past(const std::string& part, std::uint64_t end, const std::string& whole, std::uint64_t size) {
  return part + " runs to byte " + Number(end) + ", and " + whole + " has " + Number(size);
}

constexpr const char* kRestIsMissing = ": the rest is missing or the font is damaged";

// Indexed by Work.
constexpr auto kWorkWords = std::to_array<const char*>({
    "its files are looked up or read many times",
    "its resource map lists more types and resources than its size allows",
    "its FOND resources share their bytes, or list very many styles",
    "its style mappings repeat the same strings",
    "its kerning tables share their pairs",
    "it names very many printer fonts",
    "its name tables repeat the same text",
    "its styles share outlines, which are read again for each",
    "its faces list the same tables many times",
});
static_assert(kWorkWords.size() == kWorks);

}  // namespace

std::string Words(const NameFault& fault, const std::string& whole) {
  switch (fault.kind) {
    case NameFault::kNoDirectory:
      return whole + " ends before the list of tables, after " + Counted(fault.size);
    case NameFault::kNoTables:
      return "its header states 0 tables";
    case NameFault::kTooManyTables:
      return "its header states " + Number(fault.stated) + " tables, more than a font can have";
    case NameFault::kCutDirectory:
      return whole + " ends inside the list of tables: " + Number(fault.stated) + " are stated, " +
             Number(fault.found) + " are there, and no name table is among them";
    case NameFault::kNoTable:
      return "it has no name table, as fonts cut out of documents often have not";
    case NameFault::kOffsetZero:
      return "its name table has the offset 0";
    case NameFault::kPastEnd:
      return Past("its name table", fault.end, whole, fault.size) + (fault.size == 1 ? " byte" : " bytes") +
             kRestIsMissing;
    case NameFault::kCutHeader:
      return "its name table ends inside its header";
    case NameFault::kNoNames:
      return "its name table lists no names";
    case NameFault::kCutRecords:
      return "its name table ends before its first name";
    case NameFault::kNoTextInside:
      return "every name in its name table is empty or lies outside the font";
    case NameFault::kNoValidText:
      return "no name in its name table is valid text";
  }
  return {};
}

std::string Words(const MapFault& fault) {
  switch (fault.kind) {
    case MapFault::kCutHeader:
      return "it ends inside its header";
    case MapFault::kDataPastEnd:
      return Past("its data area", fault.end, "the fork", fault.size);
    case MapFault::kMapPastEnd:
      return Past("its map", fault.end, "the fork", fault.size);
    case MapFault::kShortMap:
      return "its map has fewer than 30 bytes";
    case MapFault::kUnreadable:
      return "its map cannot be read";
    case MapFault::kTypeListPastEnd:
      return Past("its type list", fault.end, "the map", fault.size);
    case MapFault::kReferenceListPastEnd:
      return Past("the list of " + TypeText(fault.type) + " resources", fault.end, "the map", fault.size);
  }
  return {};
}

std::string Words(const CollectionFault& fault) {
  const std::string table = "its table " + TypeText(fault.tag);
  switch (fault.kind) {
    case CollectionFault::kCutList:
      return "the file ends inside the list of faces";
    case CollectionFault::kDirectoryPastEnd:
      return "its list of tables lies at byte " + Number(fault.end) + ", and the file has " +
             Number(fault.size);
    case CollectionFault::kCutDirectory:
      return "the file ends inside its list of tables";
    case CollectionFault::kTablePastEnd:
      return Past(table, fault.end, "the file", fault.size) + kRestIsMissing;
    case CollectionFault::kCutPadding:
      return table + " lacks " + Counted(fault.end - fault.size) +
             " of its padding at the end of the file (as many zero bytes at the end of a copy mend that)";
    case CollectionFault::kNotSmaller:
      return "cut out it would be no smaller than the whole collection, as only damaged ones are";
  }
  return {};
}

std::string Words(const StyleFault& fault) {
  const std::string outline = "sfnt " + std::to_string(fault.outline);
  const std::string fond = "FOND " + std::to_string(fault.fond_id);
  const std::string style = fond + ", style " + std::to_string(fault.style) + ": ";
  switch (fault.kind) {
    case StyleFault::kNoFondData:
      return "the data of a FOND lie outside the file";
    case StyleFault::kNoStyles:
      return fond + " lists no styles";
    case StyleFault::kDamagedOutline:
      return style + outline + " is damaged: " + (fault.names ? Words(*fault.names, outline) : "");
    case StyleFault::kUnknownOutline:
      return style + outline + " is neither a TrueType nor an OpenType font";
    case StyleFault::kMissingOutline:
      return style + "no readable sfnt resource has the number " + std::to_string(fault.outline) +
             ", which the style names first";
    case StyleFault::kNoPrinterName:
      return style + "it has bitmaps only, and states no PostScript name that would lead to a printer font";
    case StyleFault::kPrinterNamePath:
      return style + "the name of its printer font holds a slash, and is not followed";
    case StyleFault::kNoBitmaps:
      return style +
             "a printer font is looked for only when the file holds NFNT resources, and it holds none";
  }
  return {};
}

std::string Words(const DuplicateFault& fault) {
  const std::string other = "face " + std::to_string(fault.face);
  if (!fault.shared) return "the same font as " + other;
  return fault.shared->empty() ? "no PostScript name, like " + other
                               : "the PostScript name of " + other + ", " + Printable(*fault.shared);
}

std::string Words(Work work) { return kWorkWords[static_cast<std::size_t>(work)]; }

std::string Words(CollectionStatus status) {
  switch (status) {
    case kCollectionWrongVersion:
      return "a collection of an unknown version";
    case kCollectionFileError:
      return "cannot be read whole: the file is too large for the memory or changed meanwhile";
    case kCollectionOutOfBounds:
      return "a damaged collection: the file ends inside its header";
    case kCollectionWrongTag:
      return "not a collection";
    case kCollectionOk:
    case kCollectionNoFace:
      break;
  }
  return "a damaged collection: its header states 0 faces";
}

}  // namespace quillmark::tool
