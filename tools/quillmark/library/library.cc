#include "library/library.h"

#include <sys/stat.h>

#include <algorithm>
#include <cwctype>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "api/font_array.h"
#include "reasons/opened_font.h"
#include "text/utf8_character.h"

namespace quillmark::tool {
namespace {

bool HaveEqualFaces(const LibraryFile& a, const LibraryFile& b) {
  return std::equal(a.faces.begin(), a.faces.end(), b.faces.begin(), b.faces.end(),
                    [](const LibraryFace& x, const LibraryFace& y) {
                      return x.checksum == y.checksum && x.post_script_name == y.post_script_name;
                    });
}

}  // namespace

// Tools that replace equal files by hard links link all empty
// ones, too, though the resource forks in their sidecars differ: the key of an empty file is its path.
std::string FileIdentity(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && status.st_size > 0) {
    return std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino);
  }
  std::error_code error;
  const std::filesystem::path place = std::filesystem::canonical(path, error);
  return error ? path : place.native();
}

// Only the checksum of a face without a FOND covers whole forks: the data fork of a cross-platform font, both
// of any other. Collection faces have no size.
std::uint64_t CheckedBytes(const Face& face, std::int32_t fond_id, std::uint64_t data_fork_size) {
  if (fond_id != -1 || face.outline_file_size == 0) return 0;
  return face.platform == "crossplatform" && data_fork_size > 0 ? data_fork_size : face.outline_file_size;
}

std::uint64_t SizeOfFile(const std::vector<Face>& faces) {
  const auto has_it = [](const Face& face) {
    return face.outline_file.empty() && face.outline_file_size > 0;
  };
  const auto found = std::find_if(faces.begin(), faces.end(), has_it);
  return found == faces.end() ? 0 : found->outline_file_size;
}

std::uint64_t ReadFileSize(const std::string& path, const FileSystem& system) {
  return OpenedFont(path, system).file.TotalLength();
}

bool HoldsLetterOrDigit(const std::string& name) {
  const std::vector<Character> characters = Characters(name);
  return std::any_of(characters.begin(), characters.end(), [](const Character& c) {
    return c.code == kNoCharacter || std::iswalnum(static_cast<std::wint_t>(c.code)) != 0;
  });
}

void Library::Add(const std::string& path, const std::vector<Face>& faces, const QM_FontArray& array) {
  LibraryFile file{path, {}, SizeOfFile(faces)};
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  for (const Face& face : faces) {
    const QM_FontSpecifier& specifier = array.view(face.index);
    file.faces.push_back({.file = 0,
                          .index = face.index,
                          .post_script_name = face.post_script_name,
                          .kind = face.kind,
                          .version = face.version,
                          .foundry = face.foundry,
                          .fond_id = specifier.fondResourceID,
                          .style = specifier.style,
                          .checksum = face.checksum,
                          .bytes = CheckedBytes(face, specifier.fondResourceID, error ? 0 : size),
                          .is_variable = specifier.has_variation_axes});
  }
  Add(std::move(file), FileIdentity(path));
}

void Library::Add(LibraryFile file, std::string identity) {
  const auto known = files_by_identity_.find(identity);
  // The forks that lie beside a path can give one file other faces under another path.
  if (known != files_by_identity_.end() && HaveEqualFaces(files_[known->second], file)) {
    ++link_count_;
    return;
  }
  files_.push_back(std::move(file));
  files_by_identity_.emplace(std::move(identity), files_.size() - 1);
}

void Library::Finish() {
  files_by_identity_.clear();
  std::sort(files_.begin(), files_.end(),
            [](const LibraryFile& a, const LibraryFile& b) { return a.path < b.path; });
  for (std::size_t i = 0; i < files_.size(); ++i) {
    for (LibraryFace& face : files_[i].faces) face.file = i;
  }
  TellDataApart();
}

std::uint64_t Library::FileSize(const LibraryFace& face) {
  LibraryFile& file = files_[face.file];
  if (file.size == 0) file.size = ReadFileSize(file.path);
  return file.size;
}

LibraryCounts Library::Count() const {
  LibraryCounts counts;
  for (const LibraryFile& file : files_) {
    counts.faces += file.faces.size();
    for (const LibraryFace& face : file.faces) {
      if (face.post_script_name.empty()) {
        ++counts.nameless;
      } else if (!HoldsLetterOrDigit(face.post_script_name)) {
        ++counts.names_without_letters;
      }
    }
  }
  return counts;
}

void Library::TellDataApart() {
  // When several sizes are known for one name and checksum, they distinguish the data; otherwise faces of
  // unknown size, which those of resources and collections are, count as the same data.
  using NameAndChecksum = std::pair<std::string_view, std::uint32_t>;
  std::map<NameAndChecksum, std::set<std::uint64_t>> sizes;
  for (const LibraryFile& file : files_) {
    for (const LibraryFace& face : file.faces) {
      std::set<std::uint64_t>& known = sizes[{face.post_script_name, face.checksum}];
      if (face.bytes > 0) known.insert(face.bytes);
    }
  }
  std::map<std::pair<NameAndChecksum, std::uint64_t>, std::size_t> numbers;
  for (LibraryFile& file : files_) {
    for (LibraryFace& face : file.faces) {
      if (face.checksum == 0) {
        face.data = kUnknownData;
        continue;
      }
      const NameAndChecksum key(face.post_script_name, face.checksum);
      const std::uint64_t size = sizes[key].size() > 1 ? face.bytes : 0;
      face.data = numbers.try_emplace({key, size}, numbers.size()).first->second;
    }
  }
}

}  // namespace quillmark::tool
