#include "analysis/postscript_header.h"

#include <algorithm>
#include <utility>

#include "knowledge/foundry_name_table.h"
#include "platform/text/ascii_case.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr std::size_t kLongestValue = 3999;
constexpr std::size_t kPostTypeSize = 2;
constexpr std::string_view kHeaderComment = "%!PS-AdobeFont-";

// What ends a value, and which character opens a nested pair inside it. Without an opening character nothing
// nests.
struct ValueBounds {
  char opening;
  char closing;
  bool skips_first;  // whether the value's first character is only a delimiter
};

ValueBounds BoundsFor(char first) {
  if (first == '(') return {'(', ')', true};
  if (first == '[') return {'[', ']', true};
  if (first == '{') return {'{', '}', true};
  return {'\0', ' ', first == '/'};
}

std::optional<std::string> FindHeaderComment(std::string_view data, std::string_view delimiters) {
  if (data.size() < kPostTypeSize) return std::nullopt;
  return GetDelimitedKeyValue(data.substr(kPostTypeSize), kHeaderComment, delimiters);
}

bool NamesKnownFoundry(const std::string& text) {
  return CFoundryNameTable::GetSharedFoundryNameTable()->ContainsKnownFoundryName(text, nullptr);
}

void Assign(OmString& text, const std::optional<std::string>& value) {
  if (value) text = *value;
}
void AssignIfEmpty(OmString& text, const std::optional<std::string>& value) {
  if (text.empty()) Assign(text, value);
}

}  // namespace

std::string LowerCasedHeader(std::string_view data) {
  std::string lowered(data);
  for (char& c : lowered) c = c == '\0' ? '_' : ToLowerAscii(c);
  return lowered;
}

std::optional<std::string> findBlobForToken(std::string_view lowered, std::string_view data,
                                            std::string_view key) {
  const std::size_t found = lowered.find(key);
  if (found == std::string_view::npos) return std::nullopt;
  std::size_t start = data.find_first_not_of(" \n", found + key.size());
  start = std::min(start, data.size());
  const ValueBounds bounds = BoundsFor(start < data.size() ? data[start] : '\0');
  if (bounds.skips_first) ++start;

  std::size_t end = start;
  for (std::size_t open = 0; end < data.size() && end - start < kLongestValue; ++end) {
    const char c = data[end];
    if (c == '\0') break;
    if (c == bounds.opening) ++open;
    if (c == bounds.closing) {
      if (open == 0) break;
      --open;
    }
  }
  return std::string(data.substr(start, end - start));
}

std::optional<std::string> GetDelimitedKeyValue(std::string_view data, std::string_view key,
                                                std::string_view delimiters) {
  const std::size_t found = data.find(key);
  if (found == std::string_view::npos) return std::nullopt;
  std::string_view text = data.substr(found + key.size());
  text.remove_prefix(std::min(text.find_first_of(delimiters), text.size()));
  if (!text.empty()) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return std::string(text.substr(0, text.find_first_of(delimiters)));
}

PostScriptHeader ReadPostScriptHeader(std::string_view data, bool wants_foundry) {
  const std::string lowered = LowerCasedHeader(data);
  const auto find = [&](std::string_view key) { return findBlobForToken(lowered, data, key); };
  PostScriptHeader header;
  header.is_multiple_master = lowered.find("/weightvector") != std::string::npos;
  header.cid_version = find("/cidfontversion");
  header.version = find("/version");
  header.family_name = find("/familyname");
  header.comment_family_name = FindHeaderComment(data, ":- \r\n%");  // the font's name before a hyphen
  header.cid_font_name = find("/cidfontname");
  header.font_name = find("/fontname");
  header.comment_font_name = FindHeaderComment(data, ": \r\n%");
  header.full_name = find("/fullname");
  if (wants_foundry) {
    auto text = find("/notice");
    header.has_notice = text.has_value();
    if (!text) text = find("/copyright");
    if (text && (NamesKnownFoundry(*text) || NamesKnownFoundry(lowered))) header.foundry = std::move(text);
  }
  return header;
}

PostScriptHeader ReadPostHeader(Bytes resource, bool wants_foundry) {
  std::string data(AsText(resource));
  std::ranges::replace(data, '\0', '_');
  return ReadPostScriptHeader(data, wants_foundry);
}

void GatherPostScriptMetaData(const PostScriptHeader& header, std::uint32_t request, FaceNames& names,
                              OmString& kind_name) {
  if (header.is_multiple_master) kind_name = "PostScript - MM";
  if (header.cid_version) {
    names.version = *header.cid_version;
  } else {
    AssignIfEmpty(names.version, header.version);
  }
  Assign(names.family, header.family_name);
  AssignIfEmpty(names.family, header.comment_family_name);
  AssignIfEmpty(names.family, header.full_name);
  if (request & QM_ATTRIBUTE_POSTSCRIPT_NAME) {
    if (header.cid_font_name || header.font_name) {
      Assign(names.post_script_name, header.cid_font_name ? header.cid_font_name : header.font_name);
    } else {
      AssignIfEmpty(names.post_script_name, header.full_name);
    }
    AssignIfEmpty(names.post_script_name, header.comment_font_name);
    // The /FullName value is not used as the full name, which it looks made for: stored results rely on it.
    names.display_name = names.post_script_name;
    names.full_name = names.post_script_name;
  }
  if (header.has_notice || names.foundry.empty()) Assign(names.foundry, header.foundry);
  AssignIfEmpty(kind_name, "PostScript");
}

}  // namespace quillmark
