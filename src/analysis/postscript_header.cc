#include "analysis/postscript_header.h"

#include <algorithm>

#include "knowledge/foundry_name_table.h"

namespace quillmark {
namespace {

constexpr std::size_t kLongestValue = 3999;
constexpr std::size_t kPostTypeSize = 2;
constexpr std::string_view kHeaderComment = "%!PS-AdobeFont-";

// What ends a value, and what within it asks for one more end. No opening character: nothing nests.
struct ValueBounds {
  char opening;
  char closing;
  bool skips_first;  // whether the value's first character is only a mark
};

ValueBounds BoundsFor(char first) {
  switch (first) {
    case '(':
      return {'(', ')', true};
    case '[':
      return {'[', ']', true};
    case '{':
      return {'{', '}', true};
    case '/':
      return {'\0', ' ', true};
    default:
      return {'\0', ' ', false};
  }
}

bool FindHeaderComment(std::string_view data, std::string_view delimiters, OmString* value) {
  if (data.size() < kPostTypeSize) return false;
  return GetDelimitedKeyValue(data.substr(kPostTypeSize), kHeaderComment, delimiters, value);
}

void GatherVersion(std::string_view lowered, std::string_view data, OmString& version) {
  if (findBlobForToken(lowered, data, "/cidfontversion", &version)) return;
  if (version.empty()) findBlobForToken(lowered, data, "/version", &version);
}

void GatherFamilyName(std::string_view lowered, std::string_view data, OmString& family_name) {
  findBlobForToken(lowered, data, "/familyname", &family_name);
  // The part of the font's name before a hyphen.
  if (family_name.empty()) FindHeaderComment(data, ":- \r\n%", &family_name);
  if (family_name.empty()) findBlobForToken(lowered, data, "/fullname", &family_name);
}

void GatherPostScriptName(std::string_view lowered, std::string_view data, OmString& name) {
  if (!findBlobForToken(lowered, data, "/cidfontname", &name) &&
      !findBlobForToken(lowered, data, "/fontname", &name) && name.empty()) {
    findBlobForToken(lowered, data, "/fullname", &name);
  }
  if (name.empty()) FindHeaderComment(data, ": \r\n%", &name);
}

// Stores the maker's own words, and only where a known maker is named, in them or anywhere in the header.
void GatherFoundry(std::string_view lowered, std::string_view data, OmString& foundry) {
  OmString text;
  if (!findBlobForToken(lowered, data, "/notice", &text)) {
    if (!foundry.empty() || !findBlobForToken(lowered, data, "/copyright", &text)) return;
  }
  const CFoundryNameTable* known = CFoundryNameTable::GetSharedFoundryNameTable();
  if (known->ContainsKnownFoundryName(text, nullptr) ||
      known->ContainsKnownFoundryName(std::string(lowered), nullptr)) {
    foundry = text;
  }
}

}  // namespace

std::string LowerCasedHeader(std::string_view data) {
  std::string lowered(data);
  for (char& c : lowered) {
    if (c == '\0') c = '_';
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lowered;
}

bool findBlobForToken(std::string_view lowered, std::string_view data, std::string_view key,
                      OmString* value) {
  const std::size_t found = lowered.find(key);
  if (found == std::string_view::npos) return false;
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
  *value = std::string(data.substr(start, end - start));
  return true;
}

bool GetDelimitedKeyValue(std::string_view data, std::string_view key, std::string_view delimiters,
                          OmString* value) {
  const std::size_t found = data.find(key);
  if (found == std::string_view::npos) return false;
  std::string_view text = data.substr(found + key.size());
  text.remove_prefix(std::min(text.find_first_of(delimiters), text.size()));
  if (!text.empty()) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  *value = std::string(text.substr(0, text.find_first_of(delimiters)));
  return true;
}

void GatherPostScriptMetaDataFromData(std::string_view lowered, std::string_view data,
                                      const FaceOutputs& outputs) {
  const NameOutputs& names = outputs.names;
  if (outputs.kind_name && lowered.find("/weightvector") != std::string_view::npos) {
    *outputs.kind_name = "PostScript - MM";
  }
  if (names.version) GatherVersion(lowered, data, *names.version);
  if (names.family_name) GatherFamilyName(lowered, data, *names.family_name);
  if (names.post_script_name) {
    GatherPostScriptName(lowered, data, *names.post_script_name);
    // The /FullName value is not used as the full name, which it looks made for: stored results rely on it.
    if (names.display_name) *names.display_name = *names.post_script_name;
    if (names.full_name) *names.full_name = *names.post_script_name;
  }
  if (names.foundry) GatherFoundry(lowered, data, *names.foundry);
  if (outputs.kind_name && outputs.kind_name->empty()) *outputs.kind_name = "PostScript";
}

void GatherMetaDataFromHandle(Handle handle, const FaceOutputs& outputs) {
  if (handle == nullptr || *handle == nullptr) return;
  std::string data(AsText(HandleBytes(handle)));
  std::ranges::replace(data, '\0', '_');
  GatherPostScriptMetaDataFromData(LowerCasedHeader(data), data, outputs);
}

}  // namespace quillmark
