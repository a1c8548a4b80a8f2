// Conversions between the encodings that font names come in and UTF-8 or UTF-16, in one place and without
// opening a converter for each string. Functions that can fail return nothing and keep no state; any thread
// may call them. Sources: Apple's ROMAN.TXT and JAPANESE.TXT mapping tables, Unicode's SHIFTJIS mapping,
// UnicodeData.txt. Defined in text_encoding.cc (Unicode forms), mac_roman.cc, shift_jis.cc and lowercase.cc.
// Tests: tests/platform/text_encoding_test.cc.
#ifndef QUILLMARK_PLATFORM_TEXT_TEXT_ENCODING_H_
#define QUILLMARK_PLATFORM_TEXT_TEXT_ENCODING_H_

#include <optional>
#include <string>
#include <string_view>

#include "platform/byte_reader.h"

namespace quillmark {

// Bytes 00 to 7F only, which stand for themselves in every encoding here except MacJapanese's yen sign.
bool IsAscii(std::string_view text);

// Strict UTF-8: no overlong form, no surrogate, nothing cut, nothing above 10FFFF.
bool IsValidUtf8(std::string_view text);
// The longest beginning of `text` that is valid UTF-8.
std::string_view ValidUtf8Prefix(std::string_view text);

// UTF-8 to UTF-16; nothing when the text is not valid. One leading byte order mark is dropped.
std::optional<std::u16string> Utf8ToUtf16(std::string_view text);
// UTF-16 to UTF-8; nothing when it holds a lone surrogate. A byte order mark is kept as U+FEFF.
std::optional<std::string> Utf16ToUtf8(std::u16string_view units);

// Single- and multi-byte Macintosh and Windows text. MacRoman never fails; the Japanese ones refuse the whole
// text for one bad or cut sequence. MacJapanese is Shift-JIS except for six single bytes.
std::string MacRomanToUtf8(std::string_view text);
std::optional<std::string> ShiftJisToUtf8(std::string_view text);
std::optional<std::string> MacJapaneseToUtf8(std::string_view text);
std::u16string MacRomanToUtf16(std::string_view text);
std::optional<std::u16string> ShiftJisToUtf16(std::string_view text);
std::optional<std::u16string> MacJapaneseToUtf16(std::string_view text);

// Unicode's full lower-case mapping with no locale: one to one, except for U+0130 (i and U+0307) and a
// capital sigma at a word's end (U+03C2).
std::u16string LowercaseUtf16(std::u16string_view text);

}  // namespace quillmark

#endif
