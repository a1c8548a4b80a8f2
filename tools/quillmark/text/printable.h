// Makes text from font files and paths safe to show: it then holds no terminal controls, nothing that
// reorders a line and nothing invisible.
#ifndef QUILLMARK_TOOL_TEXT_PRINTABLE_H_
#define QUILLMARK_TOOL_TEXT_PRINTABLE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "text/utf8_character.h"

namespace quillmark::tool {

// Controls, among them the escape character and line ends; what sets the direction of text; and characters
// that show nothing.
bool IsHidden(char32_t code);

// A hidden character as JSON writes it, "\n" or "\u202E", and a byte of no character as "\xFF".
std::string Escaped(const Character& character);

// On one line, hidden characters and bytes of no character escaped, and backslashes doubled: two texts that
// differ in any of these stay different.
std::string Printable(const std::string& text);

// A resource type or sfnt tag: its four characters, made printable.
std::string TypeText(std::uint32_t type);

// A path in messages: an empty one is shown as such.
std::string ShownPath(const std::string& path);

// A word that a reader can copy into a shell, in quotes where it needs them. None for an empty one, one with
// a dash in front, and one that is shown in another way than it is written.
std::optional<std::string> ShellWord(const std::string& word);

// Valid UTF-8 with "_" in place of hidden characters.
std::string WithoutHidden(std::string_view text);

}  // namespace quillmark::tool

#endif
