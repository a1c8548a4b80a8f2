#include "reasons/known_formats.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <vector>

#include "platform/text/ascii_case.h"

namespace quillmark::tool {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kGzipMagic = "\x1F\x8B"sv;

constexpr std::string_view kConvertWebFont = "convert it to TrueType or OpenType";
constexpr std::string_view kBitmapsOnly =
    "it holds bitmaps, and only outline fonts and Macintosh suitcases are read";
constexpr std::string_view kMetricsOnly = "it holds metrics only; give the font that it belongs to";
constexpr std::string_view kUnpack = "unpack it and give what is inside";
constexpr std::string_view kUnpackForks =
    "unpack it with a program that keeps resource forks, and give what is inside";
constexpr std::string_view kDownload = "get the file again, from the link to the file itself";

bool StatesSizeAt0(const FileStart& file) { return LittleU32At(file.bytes, 0) == file.size; }
bool StatesSizeAt2(const FileStart& file) { return LittleU32At(file.bytes, 2) == file.size; }

// The new header of a Windows executable lies where the 32-bit number at 60 says.
bool HasNewHeader(const FileStart& file, std::string_view signature) {
  const auto offset = LittleU32At(file.bytes, 60);
  const auto found = offset ? Slice(file.bytes, *offset, signature.size()) : std::nullopt;
  return found && AsText(*found) == signature;
}
bool IsNewExecutable(const FileStart& file) { return HasNewHeader(file, "NE"); }
bool IsPortableExecutable(const FileStart& file) { return HasNewHeader(file, "PE\0\0"sv); }

std::string LowerCased(const FileStart& file) {
  std::string text(AsText(file.bytes));
  std::transform(text.begin(), text.end(), text.begin(), ToLowerAscii);
  return text;
}
bool IsHtml(const FileStart& file) {
  const std::string text = LowerCased(file);
  const std::size_t first = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
  if (first == std::string::npos) return false;
  return text.compare(first, 14, "<!doctype html") == 0 || text.compare(first, 5, "<html") == 0;
}
bool Mentions(const FileStart& file, std::string_view word) {
  return AsText(file.bytes).find(word) != std::string_view::npos;
}
bool IsSvgFont(const FileStart& file) { return Mentions(file, "<svg") && Mentions(file, "<font"); }
bool IsSvg(const FileStart& file) { return Mentions(file, "<svg"); }
bool IsBinHex(const FileStart& file) { return Mentions(file, "(This file must be converted with BinHex"); }

// A header of 128 bytes: zeros where the format wants them, and the length of the file's name.
bool IsMacBinary(const FileStart& file) {
  const auto byte = [&](std::size_t at) { return U8At(file.bytes, at).value_or(0xFF); };
  const bool is_named = byte(1) >= 1 && byte(1) <= 63;
  return file.bytes.size() >= 128 && is_named && byte(0) == 0 && byte(74) == 0 && byte(82) == 0 &&
         (byte(122) == 0x81 || byte(122) == 0x82) && byte(123) == 0x81;
}

bool IsBareCff(const FileStart& file) {
  const auto offset_size = U8At(file.bytes, 3).value_or(0);
  return offset_size >= 1 && offset_size <= 4;
}

// Twelve numbers begin a TeX metric file; the first is the sum of the others' tables, in words.
bool IsTexMetrics(const FileStart& file) {
  const auto number = [&](std::size_t i) { return std::uint64_t{U16At(file.bytes, 2 * i).value_or(0)}; };
  if (file.bytes.size() < 24 || number(0) * 4 != file.size || number(3) > 255) return false;
  std::uint64_t words = 6 + number(1) + number(3) + 1 - number(2);
  for (std::size_t i = 4; i < 12; ++i) words += number(i);
  return words == number(0);
}

// Decompresses the beginning of a gzip file: at most kFileStartSize bytes, none when it is damaged.
std::vector<std::uint8_t> ReadGzipStart(Bytes start) {
  constexpr int kGzipOnly = 16 + MAX_WBITS;
  z_stream stream{};
  if (::inflateInit2(&stream, kGzipOnly) != Z_OK) return {};
  std::vector<std::uint8_t> compressed(start.begin(), start.end());  // zlib's input is not const
  std::vector<std::uint8_t> plain(kFileStartSize);
  stream.next_in = compressed.data();
  stream.avail_in = static_cast<uInt>(compressed.size());
  stream.next_out = plain.data();
  stream.avail_out = static_cast<uInt>(plain.size());
  // Whatever it returns, the bytes decompressed so far are the beginning of the file.
  static_cast<void>(::inflate(&stream, Z_SYNC_FLUSH));
  plain.erase(plain.end() - stream.avail_out, plain.end());
  ::inflateEnd(&stream);
  return plain;
}

struct Format {
  FormatUse use;
  std::string_view name, magic;
  std::size_t offset;                        // of the magic bytes
  std::string_view advice;                   // what to do; may be empty
  bool (*test)(const FileStart&) = nullptr;  // must be true as well
};

constexpr auto kFont = FormatUse::kFont;
constexpr auto kPrinterFont = FormatUse::kPrinterFont;
constexpr auto kNoFont = FormatUse::kNoFont;

// The first that matches counts: longer magic bytes come before their own prefixes, formats with a test alone
// last. A byte before a letter or digit is octal, which ends after three digits.
constexpr auto kFormats = std::to_array<Format>({
    {kFont, "a WOFF web font", "wOFF", 0, kConvertWebFont},
    {kFont, "a WOFF2 web font", "wOF2", 0, kConvertWebFont},
    {kFont, "an EOT web font", "LP", 34, kConvertWebFont, StatesSizeAt0},
    {kFont, "a BDF bitmap font", "STARTFONT ", 0, kBitmapsOnly},
    {kFont, "a PCF bitmap font", "\001fcp", 0, kBitmapsOnly},
    {kFont, "a PSF console font", "\x72\xB5\x4A\x86", 0, kBitmapsOnly},
    {kFont, "a PSF console font", "\x36\x04", 0, kBitmapsOnly},
    {kFont, "an HBF bitmap font header", "HBF_START_FONT", 0, kBitmapsOnly},
    {kFont, "a PFF2 boot loader font", "PFF2", 8, kBitmapsOnly},
    {kFont, "a Windows bitmap font (FNT)", "\0\x02"sv, 0, kBitmapsOnly, StatesSizeAt2},
    {kFont, "a Windows bitmap font (FNT)", "\0\x03"sv, 0, kBitmapsOnly, StatesSizeAt2},
    {kFont, "a Windows font resource file (FON bitmaps or FOT link) or program", "MZ", 0,
     "of a FOT link give the .ttf file it points to; bitmaps are not read", IsNewExecutable},
    {kNoFont, "a Windows program or font resource library", "MZ", 0, "", IsPortableExecutable},
    {kPrinterFont, "a CID-keyed PostScript printer font", "%!PS-Adobe-3.0 Resource-CIDFont", 0, ""},
    {kPrinterFont, "a PostScript Type 1 printer font", "%!PS-AdobeFont", 0, ""},
    {kPrinterFont, "a PostScript Type 1 printer font", "%!FontType1", 0, ""},
    {kPrinterFont, "a PostScript Type 1 printer font (PFB)", "\x80\x01", 0, ""},
    {kFont, "a Type 42 PostScript font", "%!PS-TrueTypeFont", 0,
     "give the TrueType font that it was made of"},
    {kNoFont, "a PostScript program", "%!", 0, ""},
    {kFont, "a Windows metrics file of a printer font (PFM)", "\0\x01"sv, 0, kMetricsOnly, StatesSizeAt2},
    {kFont, "an AFM metrics file of a printer font", "StartFontMetrics", 0, kMetricsOnly},
    {kFont, "an AMFM metrics file of a multiple master font", "StartMasterFontMetrics", 0, kMetricsOnly},
    {kFont, "a bare CFF font", "\x01\0\x04"sv, 0, "wrap it as OpenType", IsBareCff},
    {kFont, "a PFR font", "PFR0", 0, kConvertWebFont},
    {kFont, "a PFR font", "PFR1", 0, kConvertWebFont},
    {kFont, "a Speedo font", "D1.0\r", 0, "convert it to TrueType or OpenType"},
    {kFont, "a TeX packed bitmap font (PK)", "\xF7\x59", 0, kBitmapsOnly},
    {kFont, "a TeX generic bitmap font (GF)", "\xF7\x83", 0, kBitmapsOnly},
    {kFont, "a TeX virtual font (VF)", "\xF7\xCA", 0, "give the fonts that it refers to"},
    {kFont, "a font editor's source file (SFD)", "SplineFontDB:", 0, "generate a TrueType or OpenType font"},
    {kNoFont, "an AppleSingle archive", "\0\x05\x16\0"sv, 0, kUnpackForks},
    {kNoFont, "a StuffIt archive", "SIT!", 0, kUnpackForks},
    {kNoFont, "a StuffIt archive", "StuffIt", 0, kUnpackForks},
    {kNoFont, "a ZIP archive", "PK\x03\x04", 0, kUnpack},
    {kNoFont, "an empty ZIP archive", "PK\x05\x06", 0, ""},
    {kNoFont, "a gzip archive", kGzipMagic, 0, kUnpack},
    {kNoFont, "a bzip2 archive", "BZh", 0, kUnpack},
    {kNoFont, "an xz archive", "\3757zXZ\0"sv, 0, kUnpack},
    {kNoFont, "a Zstandard archive", "\x28\xB5\x2F\xFD", 0, kUnpack},
    {kNoFont, "a compress archive (.Z)", "\x1F\x9D", 0, kUnpack},
    {kNoFont, "a 7-Zip archive", "7z\xBC\xAF\x27\x1C", 0, kUnpack},
    {kNoFont, "a RAR archive", "Rar!\x1A\x07", 0, kUnpack},
    {kNoFont, "a cabinet archive", "MSCF", 0, kUnpack},
    {kNoFont, "a tar archive", "ustar", 257, kUnpack},
    {kNoFont, "a PDF document", "%PDF-", 0, ""},
    {kNoFont, "a PNG image", "\x89PNG\r\n\x1A\n", 0, ""},
    {kNoFont, "a JPEG image", "\xFF\xD8\xFF", 0, ""},
    {kNoFont, "a GIF image", "GIF8", 0, ""},
    {kNoFont, "a TIFF image", "II*\0"sv, 0, ""},
    {kNoFont, "a TIFF image", "MM\0*"sv, 0, ""},
    {kNoFont, "a RIFF media file", "RIFF", 0, ""},
    {kNoFont, "a program", "\177ELF", 0, ""},
    {kNoFont, "a Git LFS pointer", "version https://git-lfs", 0,
     "run \"git lfs pull\" to get the file itself"},
    {kNoFont, "a MacBinary archive", "", 0, kUnpackForks, IsMacBinary},
    {kNoFont, "a BinHex archive", "", 0, kUnpackForks, IsBinHex},
    {kNoFont, "a web page", "", 0, kDownload, IsHtml},
    {kFont, "an SVG font", "", 0, kConvertWebFont, IsSvgFont},
    {kNoFont, "an SVG image", "", 0, "", IsSvg},
    {kNoFont, "an XML document", "<?xml", 0, ""},
    {kFont, "a TeX metric file (TFM)", "", 0, kMetricsOnly, IsTexMetrics},
});

bool Fits(const Format& format, const FileStart& file) {
  const auto mark = Slice(file.bytes, format.offset, format.magic.size());
  return mark && AsText(*mark) == format.magic && (format.test == nullptr || format.test(file));
}

// Null when there is none.
const Format* Find(const FileStart& file) {
  const auto* const found = std::find_if(kFormats.begin(), kFormats.end(),
                                         [&](const Format& format) { return Fits(format, file); });
  return found == kFormats.end() ? nullptr : found;
}

}  // namespace

std::optional<KnownFormat> RecogniseFormat(const FileStart& file) {
  const Format* const format = Find(file);
  if (format == nullptr) return std::nullopt;
  if (format->magic == kGzipMagic) {
    const std::vector<std::uint8_t> plain = ReadGzipStart(file.bytes);
    const Format* const inside = Find({plain, 0});
    if (inside != nullptr && inside->use == kFont) {
      return KnownFormat{kFont, std::string(inside->name) + ", compressed with gzip", inside->advice};
    }
  }
  return KnownFormat{format->use, std::string(format->name), format->advice};
}

std::optional<std::string_view> SfntKind(Bytes start) {
  using namespace std::string_view_literals;
  if (StartsWith(start, "\0\1\0\0"sv) || StartsWith(start, "true")) return "a TrueType font";
  if (StartsWith(start, "OTTO")) return "an OpenType font";
  if (StartsWith(start, "typ1")) return "a Type 1 font in TrueType's container";
  return std::nullopt;
}

}  // namespace quillmark::tool
