#include "analysis/collection.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <new>
#include <string_view>

#include "platform/forks.h"

namespace quillmark {
namespace {

constexpr std::uint32_t kHeaderSize = 12;  // tag, version, number of faces
constexpr std::uint32_t kListEntrySize = 4;
constexpr std::uint32_t kDirectoryHeaderSize = 12;
constexpr std::uint32_t kDirectoryEntrySize = 16;
constexpr int kMaxNamesTried = 100;

constexpr std::uint64_t Padded(std::uint32_t length) { return (std::uint64_t{length} + 3) / 4 * 4; }

CollectionStatus CheckHeader(Bytes start) {
  if (!StartsWith(start, "ttcf")) return kCollectionWrongTag;
  if (start.size() <= kHeaderSize) return kCollectionOutOfBounds;
  const auto version = U32At(start, 4);
  return version == 0x00010000u || version == 0x00020000u ? kCollectionOk : kCollectionWrongVersion;
}

CollectionStatus ReadWhole(const std::string& path, std::vector<std::uint8_t>& bytes) {
  const auto file = RegularFile::Open(path);
  if (!file) return kCollectionFileError;
  const std::uint64_t size = file->size();
  if (size == 0) return kCollectionWrongVersion;
  if (size > std::numeric_limits<std::uint32_t>::max()) return kCollectionFileError;
  // The header first, so that a large file of another kind is not read whole.
  bytes.resize(std::min<std::size_t>(size, kHeaderSize + 1));
  if (file->ReadAt(0, bytes) < bytes.size()) return kCollectionFileError;
  if (const CollectionStatus status = CheckHeader(bytes); status != kCollectionOk) return status;
  bytes.resize(size);
  return file->ReadAt(0, bytes) < bytes.size() ? kCollectionFileError : CheckHeader(bytes);
}

void Append(Bytes bytes, std::vector<char>& out) {
  const std::string_view text = AsText(bytes);
  out.insert(out.end(), text.begin(), text.end());
}

// Whether the stand-alone font of a directory can be made, looked at before a byte is copied. `size` receives
// its bytes: the directory and every table padded to a multiple of 4.
CollectionStatus CheckFace(Bytes file, Bytes directory, std::uint64_t& size) {
  size = directory.size();
  bool inside = true;
  for (std::size_t entry = kDirectoryHeaderSize; entry < directory.size() && size < file.size();
       entry += kDirectoryEntrySize) {
    const std::uint64_t padded = Padded(U32At(directory, entry + 12).value_or(0));
    inside = inside && Slice(file, U32At(directory, entry + 8).value_or(0), padded);
    size += padded;
  }
  // Entries that repeat or overlap could make a face larger than its collection.
  if (size >= file.size()) return kCollectionNothing;
  return inside ? kCollectionOk : kCollectionOutOfBounds;
}

// Appends the directory and the tables it lists, one behind the other, and points the entries at them. The
// table checksums are made anew over the tables as they stand, `head` among them: the font is for reading,
// not for installing.
void CutFace(Bytes file, Bytes directory, std::vector<char>& out) {
  Append(directory, out);
  std::vector<std::uint8_t> patched(directory.begin(), directory.end());
  for (std::size_t entry = kDirectoryHeaderSize; entry < directory.size(); entry += kDirectoryEntrySize) {
    const std::uint32_t length = U32At(directory, entry + 12).value_or(0);
    const Bytes table = Slice(file, U32At(directory, entry + 8).value_or(0), length).value_or(Bytes{});
    static_cast<void>(PutU32At(patched, entry + 4, SumBigEndianWords(table)));
    static_cast<void>(PutU32At(patched, entry + 8, static_cast<std::uint32_t>(out.size())));
    Append(table, out);
    out.resize(out.size() + (Padded(length) - length));
  }
  std::copy(AsText(patched).begin(), AsText(patched).end(), out.begin());
}

}  // namespace

TrueTypeCollectionFont::TrueTypeCollectionFont(const std::string& path) : path_(path) {
  static_cast<void>(ReadIntoMemory());
}

TrueTypeCollectionFont::~TrueTypeCollectionFont() = default;

CollectionStatus TrueTypeCollectionFont::ReadIntoMemory() {
  const CollectionStatus status = ReadWhole(path_, file_data_);
  if (status != kCollectionOk) file_data_ = {};
  return status;
}

std::uint32_t TrueTypeCollectionFont::faceCount() const {
  return file_data_.size() <= kHeaderSize ? 0 : U32At(file_data_, 8).value_or(0);
}

std::uint32_t TrueTypeCollectionFont::listedFaceCount() const {
  // An entry counts only when at least one byte of the file follows it.
  if (file_data_.size() <= kHeaderSize) return 0;
  const std::size_t fitting = (file_data_.size() - kHeaderSize - 1) / kListEntrySize;
  return static_cast<std::uint32_t>(std::min<std::size_t>(faceCount(), fitting));
}

std::optional<std::uint32_t> TrueTypeCollectionFont::directoryOffset(std::uint32_t face) const {
  if (face >= listedFaceCount()) return std::nullopt;
  return U32At(file_data_, kHeaderSize + std::size_t{kListEntrySize} * face);
}

CollectionStatus TrueTypeCollectionFont::GetDataPtrForFace(std::uint32_t face, std::vector<char>& out) const {
  out.clear();
  if (face >= faceCount()) return kCollectionNothing;
  const auto offset = directoryOffset(face);
  if (!offset || std::uint64_t{*offset} + kDirectoryHeaderSize >= file_data_.size()) {
    return kCollectionOutOfBounds;
  }
  const std::size_t table_count = U16At(file_data_, std::size_t{*offset} + 4).value_or(0);
  const auto directory = Slice(file_data_, *offset, kDirectoryHeaderSize + kDirectoryEntrySize * table_count);
  if (!directory) return kCollectionOutOfBounds;

  std::uint64_t size = 0;
  const CollectionStatus status = CheckFace(file_data_, *directory, size);
  if (status != kCollectionOk) return status;
  try {
    out.reserve(size);
  } catch (const std::bad_alloc&) {
    return kCollectionNothing;
  }
  CutFace(file_data_, *directory, out);
  return kCollectionOk;
}

CollectionStatus TrueTypeCollectionFont::WriteTTF(const std::vector<char>& faceData, std::uint32_t face,
                                                  const std::string& folder, std::string& writtenPath) {
  writtenPath.clear();
  if (faceData.empty()) return kCollectionNothing;
  const std::string prefix = folder.find('/') != std::string::npos ? folder + "/" : folder;
  std::string path;
  std::filesystem::file_status existing;
  for (int tried = 0; tried < kMaxNamesTried; ++tried) {
    path = prefix + std::to_string(std::uint64_t{face} + static_cast<unsigned>(tried)) + ".ttf";
    std::error_code ignored;
    existing = std::filesystem::status(path, ignored);
    if (!std::filesystem::exists(existing)) break;
  }
  // Opening a FIFO for writing would block.
  if (std::filesystem::exists(existing) && !std::filesystem::is_regular_file(existing)) {
    return kCollectionFileError;
  }
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return kCollectionFileError;
  const bool all_written = std::fwrite(faceData.data(), 1, faceData.size(), file) == faceData.size();
  const bool closed = std::fclose(file) == 0;
  if (!all_written || !closed) return kCollectionFileError;
  writtenPath = path;
  return kCollectionOk;
}

CollectionStatus TrueTypeCollectionFont::SeparateTTCFonts(const std::string& collectionPath,
                                                          const std::string& folder,
                                                          std::vector<std::string>& writtenPaths) {
  const TrueTypeCollectionFont collection(collectionPath);
  CollectionStatus result = kCollectionOk;
  const std::uint32_t listed = collection.listedFaceCount();
  std::vector<char> face_data;
  std::string written;
  for (std::uint32_t face = 0; face < listed; ++face) {
    CollectionStatus status = collection.GetDataPtrForFace(face, face_data);
    if (status == kCollectionOk) status = WriteTTF(face_data, face, folder, written);
    if (status == kCollectionOk) {
      writtenPaths.push_back(written);
    } else {
      result = status;
    }
  }
  // The faces that the header claims beyond the list all fail for one reason.
  return listed < collection.faceCount() ? kCollectionOutOfBounds : result;
}

}  // namespace quillmark
