#include "mutations.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "builders/big_endian.h"
#include "platform/byte_reader.h"

namespace quillmark {
namespace {

constexpr std::size_t kMostZeros = 64 * 1024;
constexpr std::size_t kMostRepeats = 4000;
constexpr std::size_t kMostText = 1024 * 1024;  // what repeated pieces of pieces may grow to

std::uint32_t Largest(int width) { return width == 4 ? 0xFFFFFFFF : (1u << (8 * width)) - 1; }

std::uint32_t ValueAt(const std::string& bytes, std::size_t offset, int width) {
  std::uint32_t value = 0;
  for (int i = 0; i < width; ++i) {
    value = value << 8 | U8At(AsBytes(bytes), offset + static_cast<std::size_t>(i)).value_or(0);
  }
  return value;
}

void Put(std::string& bytes, std::size_t offset, int width, std::uint32_t value) {
  const std::string field = big_endian::Field(value, width);
  if (offset + field.size() <= bytes.size()) bytes.replace(offset, field.size(), field);
}

// A value at which readers go wrong: the ends of the number's range, and what lies near the size of the file
// and near the value that stands there.
std::uint32_t Interesting(const std::string& bytes, std::size_t offset, int width, Dice& dice) {
  const auto size = static_cast<std::uint32_t>(bytes.size());
  const std::uint32_t behind = size - static_cast<std::uint32_t>(offset);
  const std::uint32_t stored = ValueAt(bytes, offset, width);
  const std::uint32_t half = Largest(width) / 2;
  const std::array values = {0u,
                             1u,
                             2u,
                             3u,
                             16u,
                             Largest(width),
                             Largest(width) - 1,
                             half,
                             half + 1,
                             size,
                             size - 1,
                             size + 1,
                             size - 4,
                             size / 2,
                             behind,
                             behind - 1,
                             behind + 1,
                             stored - 1,
                             stored + 1,
                             stored * 2,
                             stored / 2,
                             ~stored,
                             stored ^ (half + 1),
                             dice.U32()};
  return values[dice.Below(values.size())];
}

using Damage = void (*)(std::string& bytes, Dice& dice);

void FlipBits(std::string& bytes, Dice& dice) {
  for (std::size_t left = 1 + dice.Below(16); left > 0 && !bytes.empty(); --left) {
    char& byte = bytes[dice.Below(bytes.size())];
    byte = static_cast<char>(byte ^ (1 << dice.Below(8)));
  }
}

void SetBytes(std::string& bytes, Dice& dice) {
  constexpr std::array kValues = {'\0', '\xFF', '\x7F', '\x80'};
  const std::size_t start = dice.Below(bytes.size());
  const std::size_t length = dice.OneIn(4) ? dice.Below(300) : 1 + dice.Below(4);
  const std::size_t end = std::min(bytes.size(), start + length);
  const char value = kValues[dice.Below(kValues.size())];
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(start),
            bytes.begin() + static_cast<std::ptrdiff_t>(end), value);
}

void SetNumber(std::string& bytes, Dice& dice) {
  const int width = dice.OneIn(2) ? 2 : 4;
  // Headers come first, and most numbers lie at even places.
  const std::size_t offset =
      dice.Below(dice.OneIn(2) ? std::min<std::size_t>(bytes.size(), 512) : bytes.size()) & ~std::size_t{1};
  Put(bytes, offset, width, Interesting(bytes, offset, width, dice));
}

void SwapRecords(std::string& bytes, Dice& dice) {
  constexpr std::array<std::size_t, 6> kSizes = {2, 4, 6, 8, 12, 16};
  const std::size_t size = kSizes[dice.Below(kSizes.size())];
  if (bytes.size() < 2 * size) return;
  const std::size_t first = dice.Below(bytes.size() - 2 * size + 1);
  const std::size_t second =
      dice.OneIn(2) ? first + size : first + size + dice.Below(bytes.size() - first - 2 * size + 1);
  for (std::size_t i = 0; i < size; ++i) std::swap(bytes[first + i], bytes[second + i]);
}

void Truncate(std::string& bytes, Dice& dice) {
  const std::size_t places[] = {dice.Below(bytes.size()),
                                dice.Below(std::min<std::size_t>(bytes.size(), 300)),
                                bytes.size() - std::min(bytes.size(), 1 + dice.Below(16))};
  bytes.resize(places[dice.Below(std::size(places))]);
}

void Grow(std::string& bytes, Dice& dice) {
  bytes.resize(bytes.size() + (dice.OneIn(2) ? 1 + dice.Below(8) : dice.Below(kMostZeros)));
}

// Every roll stands in a statement of its own: the order of arguments is the compiler's.
std::size_t PieceLength(Dice& dice) {
  const std::size_t most = dice.OneIn(4) ? 4096 : 32;
  return 1 + dice.Below(most);
}

std::string Piece(const std::string& bytes, Dice& dice) {
  const std::size_t start = dice.Below(bytes.size());
  return bytes.substr(start, PieceLength(dice));
}

void Duplicate(std::string& bytes, Dice& dice) {
  const std::string piece = Piece(bytes, dice);
  bytes.insert(dice.Below(bytes.size()), piece);
}

void CopyOver(std::string& bytes, Dice& dice) {
  const std::string piece = Piece(bytes, dice);
  bytes.replace(dice.Below(bytes.size()), piece.size(), piece);
}

void Remove(std::string& bytes, Dice& dice) {
  const std::size_t start = dice.Below(bytes.size());
  bytes.erase(start, PieceLength(dice));
}

constexpr Damage kDamages[] = {FlipBits, SetBytes, SetNumber, SetNumber, SwapRecords,
                               Truncate, Grow,     Duplicate, CopyOver,  Remove};

// One field, or all fields that mean the same, or two of them exchanged.
void SpoilFields(std::string& bytes, const std::vector<FontField>& fields, Dice& dice) {
  const FontField field = fields[dice.Below(fields.size())];
  const FontField other = fields[dice.Below(fields.size())];
  const std::uint32_t value = dice.OneIn(4) ? ValueAt(bytes, other.offset, other.width)
                                            : Interesting(bytes, field.offset, field.width, dice);
  switch (dice.Below(4)) {
    case 0:
      for (const FontField& each : fields) {
        if (each.role == field.role) Put(bytes, each.offset, each.width, value);
      }
      break;
    case 1:
      Put(bytes, other.offset, other.width, ValueAt(bytes, field.offset, field.width));
      [[fallthrough]];
    default:
      Put(bytes, field.offset, field.width, value);
  }
}

// Somewhere in the text, from the start of a tag.
std::size_t TagIn(const std::string& text, Dice& dice) {
  const std::size_t found = text.find('<', dice.Below(text.size()));
  return found == std::string::npos ? text.size() : found;
}

// As often as asked for, but not beyond what a text may hold.
std::string Repeated(const std::string& piece, std::size_t times) {
  std::string all;
  for (; times > 0 && all.size() + piece.size() <= kMostText; --times) all += piece;
  return all;
}

void InsertToken(std::string& text, Dice& dice) {
  constexpr const char* kTokens[] = {"<dict>",
                                     "</dict>",
                                     "<array>",
                                     "</array>",
                                     "<array/>",
                                     "<dict/>",
                                     "<key>",
                                     "</key>",
                                     "<string>",
                                     "</string>",
                                     "<string/>",
                                     "<key/>",
                                     "<integer>",
                                     "</integer>",
                                     "<integer>9223372036854775808</integer>",
                                     "<integer>-0x80000000</integer>",
                                     "<real>1e999</real>",
                                     "<true/>",
                                     "<false/>",
                                     "<data>",
                                     "</data>",
                                     "<date>",
                                     "<plist>",
                                     "</plist>",
                                     "<!--",
                                     "-->",
                                     "<!DOCTYPE",
                                     "<![CDATA[",
                                     "]]>",
                                     "<?xml version=\"1.0\" encoding=\"UTF-16\"?>",
                                     "&amp;",
                                     "&#0;",
                                     "&#x110000;",
                                     "&#xD800;",
                                     "&#99999999999;",
                                     "&",
                                     "<FontData>",
                                     "</FontData>",
                                     "<Checksum>",
                                     "</Checksum>",
                                     "<Family>",
                                     "</Family>",
                                     "\xEF\xBB\xBF",
                                     "\xFF\xFE",
                                     "\xC0\x80",
                                     "\xF4\x90\x80\x80",
                                     "\xE2\x82",
                                     "\""};
  const std::string token = kTokens[dice.Below(std::size(kTokens))];
  std::string tokens = token;
  if (dice.OneIn(8)) tokens += Repeated(token, dice.Below(kMostRepeats));
  text.insert(dice.OneIn(2) ? TagIn(text, dice) : dice.Below(text.size()), tokens);
}

// A piece between two tags, again or away: elements lose their ends, keys their values.
void RepeatElements(std::string& text, Dice& dice) {
  const std::size_t start = TagIn(text, dice);
  std::size_t end = start;
  for (std::size_t tags = 1 + dice.Below(12); tags > 0 && end < text.size(); --tags)
    end = std::min(text.find('<', end + 1), text.size());
  const std::string piece = text.substr(start, end - start);
  if (dice.OneIn(2)) text.erase(start, piece.size());
  for (std::size_t left = dice.OneIn(8) ? dice.Below(200) : dice.Below(3); left > 0; --left)
    text.insert(start, piece);
}

// A place inside a value, past a tag of letters or digits; the text's end when there is none behind the roll.
std::size_t ValueIn(const std::string& text, Dice& dice) {
  for (std::size_t at = dice.Below(text.size()); at + 1 < text.size(); ++at) {
    if (text[at] == '>' && text[at + 1] != '<' && text[at + 1] != '\n') return at + 1;
  }
  return text.size();
}

// The next two leave a list readable: what is in it is what goes wrong.
void SpoilValue(std::string& text, Dice& dice) {
  constexpr const char* kValues[] = {"",
                                     " ",
                                     "\t",
                                     "-1",
                                     "0",
                                     "2147483648",
                                     "FFFFFFFFF",
                                     "0x",
                                     "--",
                                     "&#x10FFFF;",
                                     "&amp;lt;",
                                     "\xE2\x82\xAC",
                                     "\xF0\x9F\x98\x80",
                                     "<![CDATA[x]]>"};
  const std::size_t start = ValueIn(text, dice);
  const std::size_t end = std::min(text.find('<', start), text.size());
  std::string value =
      dice.OneIn(4) ? text.substr(start, end - start) : kValues[dice.Below(std::size(kValues))];
  if (dice.OneIn(4)) value += Repeated(value, dice.Below(kMostRepeats));
  text.replace(start, end - start, value);
}

void SpoilLines(std::string& text, Dice& dice) {
  const std::size_t start = text.rfind('\n', dice.Below(text.size()));
  const std::size_t end = start == std::string::npos ? start : text.find('\n', start + 1);
  if (end == std::string::npos) return;
  const std::string line = text.substr(start, end - start);
  if (dice.OneIn(3)) {
    text.erase(start, line.size());
  } else if (dice.OneIn(2)) {
    text.insert(start, Repeated(line, dice.OneIn(4) ? dice.Below(kMostRepeats) : 1));
  } else {
    text.insert(std::min(text.find('\n', dice.Below(text.size())), text.size()), line);
  }
}

constexpr Damage kTextDamages[] = {InsertToken, InsertToken, RepeatElements, SpoilValue, SpoilValue,
                                   SpoilValue,  SpoilLines,  SpoilLines,     FlipBits,   SetBytes,
                                   Truncate,    Duplicate,   CopyOver,       Remove};

// Most often one damage alone: more of them hide each other.
std::size_t Rounds(Dice& dice) { return dice.OneIn(2) ? 1 : 1 + dice.Below(4); }

}  // namespace

void MutateFont(std::string& bytes, const std::vector<FontField>& fields, Dice& dice) {
  for (std::size_t left = Rounds(dice); left > 0; --left) {
    if (!fields.empty() && dice.OneIn(2)) {
      SpoilFields(bytes, fields, dice);
    } else {
      kDamages[dice.Below(std::size(kDamages))](bytes, dice);
    }
  }
}

void MutateText(std::string& text, Dice& dice) {
  for (std::size_t left = Rounds(dice); left > 0; --left) {
    kTextDamages[dice.Below(std::size(kTextDamages))](text, dice);
    if (text.size() > kMostText) text.resize(kMostText);
  }
}

}  // namespace quillmark
