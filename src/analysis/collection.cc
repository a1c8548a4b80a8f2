#include "analysis/collection.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <new>
#include <utility>
#include <variant>

namespace quillmark {
namespace {

constexpr std::uint32_t kHeaderSize = 12;  // tag, version, number of faces
constexpr std::uint32_t kListEntrySize = 4;
constexpr std::uint32_t kDirectoryHeaderSize = 12;
constexpr std::uint32_t kDirectoryEntrySize = 16;
constexpr std::uint32_t kMaxNamesTried = 100;
constexpr std::size_t kReadSize = 64 * TableSums::kBlockSize;  // small enough for the processor's cache

constexpr std::uint64_t kTableSteps = 1024;  // of the budget: joins the sums of one table

constexpr std::uint64_t Padded(std::uint32_t length) { return (std::uint64_t{length} + 3) / 4 * 4; }

CollectionStatus CheckHeader(Bytes start) {
  if (!StartsWith(start, "ttcf")) return kCollectionWrongTag;
  if (start.size() <= kHeaderSize) return kCollectionOutOfBounds;
  const auto version = U32At(start, 4);
  return version == 0x00010000u || version == 0x00020000u ? kCollectionOk : kCollectionWrongVersion;
}

void Append(Bytes bytes, std::vector<char>& out) { out.insert(out.end(), bytes.begin(), bytes.end()); }

TableRange TableAt(Bytes directory, std::size_t entry) {
  return {U32At(directory, entry + 8).value_or(0), U32At(directory, entry + 12).value_or(0)};
}

// The bytes of the stand-alone font: the directory and every table padded to a multiple of 4. Counting stops
// at the size of the file.
std::uint64_t FontSize(std::size_t file_size, Bytes directory) {
  std::uint64_t size = directory.size();
  for (std::size_t entry = kDirectoryHeaderSize; entry < directory.size() && size < file_size;
       entry += kDirectoryEntrySize) {
    size += Padded(TableAt(directory, entry).length);
  }
  return size;
}

// The tables, when the stand-alone font can be made. Ends at the first fault, as thousands of overlapping
// directories may list thousands of tables each.
std::variant<std::vector<TableRange>, CollectionFault> FindTables(std::size_t file_size, Bytes directory) {
  std::vector<TableRange> tables;
  std::uint64_t size = directory.size();
  for (std::size_t entry = kDirectoryHeaderSize; entry < directory.size(); entry += kDirectoryEntrySize) {
    const TableRange table = TableAt(directory, entry);
    const std::uint32_t tag = U32At(directory, entry).value_or(0);
    const std::uint64_t end = std::uint64_t{table.offset} + table.length;
    const std::uint64_t padded_end = table.offset + Padded(table.length);
    if (end > file_size) return CollectionFault{CollectionFault::kTablePastEnd, end, file_size, tag};
    if (padded_end > file_size)
      return CollectionFault{CollectionFault::kCutPadding, padded_end, file_size, tag};
    size += Padded(table.length);
    if (size >= file_size) break;
    tables.push_back(table);
  }
  if (size >= file_size) return CollectionFault{CollectionFault::kNotSmaller, size, file_size};
  return tables;
}

}  // namespace

TrueTypeCollectionFont::TrueTypeCollectionFont(FontFile& file, bool with_sums)
    : source_(file), with_sums_(with_sums) {
  static_cast<void>(ReadIntoMemory());
}

CollectionStatus TrueTypeCollectionFont::ReadIntoMemory() {
  status_ = kCollectionFileError;
  try {
    status_ = ReadWhole();
  } catch (const std::bad_alloc&) {
    // A sparse file can state a size for which there are no addresses.
  }
  if (status_ != kCollectionOk) {
    sums_ = {};
    file_.reset();
  }
  return status_;
}

CollectionStatus TrueTypeCollectionFont::ReadWhole() {
  sums_ = {};
  const auto& file = source_.Data();
  if (!file) return kCollectionFileError;
  if (file->size() == 0) return kCollectionWrongVersion;
  if (file->size() > std::numeric_limits<std::uint32_t>::max()) return kCollectionFileError;
  const auto size = static_cast<std::size_t>(file->size());
  std::vector<std::uint8_t> block(std::min(size, kReadSize));
  for (std::size_t done = 0; done < size; done += block.size()) {
    block.resize(std::min(size - done, kReadSize));
    const std::size_t read = file->ReadAt(done, block);
    if (done == 0 && read >= std::min<std::size_t>(size, kHeaderSize + 1)) {
      if (const CollectionStatus status = CheckHeader(block); status != kCollectionOk) return status;
    }
    if (read < block.size()) return kCollectionFileError;
    if (!with_sums_) break;
    ChargeBytes(source_.budget(), block.size());
    sums_.Add(block);
  }
  file_.emplace(*file, size);
  return kCollectionOk;
}

std::optional<std::uint32_t> TrueTypeCollectionFont::NumberAt(std::size_t offset) const {
  const auto bytes = file_ ? file_->Range(offset, sizeof(std::uint32_t)) : std::nullopt;
  return bytes ? U32At(*bytes, 0) : std::nullopt;
}

std::uint32_t TrueTypeCollectionFont::faceCount() const {
  return size() <= kHeaderSize ? 0 : NumberAt(8).value_or(0);
}

std::uint32_t TrueTypeCollectionFont::listedFaceCount() const {
  // An entry counts only when at least one byte of the file follows it.
  if (size() <= kHeaderSize) return 0;
  const std::size_t fitting = (size() - kHeaderSize - 1) / kListEntrySize;
  return static_cast<std::uint32_t>(std::min<std::size_t>(faceCount(), fitting));
}

std::optional<std::uint32_t> TrueTypeCollectionFont::directoryOffset(std::uint32_t face) const {
  if (face >= listedFaceCount()) return std::nullopt;
  return NumberAt(kHeaderSize + std::size_t{kListEntrySize} * face);
}

CollectionStatus TrueTypeCollectionFont::FindDirectory(std::uint32_t face, Bytes& directory,
                                                       CollectionFault& fault) const {
  fault = {CollectionFault::kCutList};
  if (face >= faceCount()) return kCollectionNoFace;
  const auto offset = directoryOffset(face);
  if (!offset) return kCollectionOutOfBounds;
  if (std::uint64_t{*offset} + kDirectoryHeaderSize >= size()) {
    fault = {CollectionFault::kDirectoryPastEnd, *offset, size()};
    return kCollectionOutOfBounds;
  }
  const Bytes header = file_->Range(*offset, kDirectoryHeaderSize).value_or(Bytes{});
  const std::size_t table_count = U16At(header, 4).value_or(0);
  const auto found = file_->Range(*offset, kDirectoryHeaderSize + kDirectoryEntrySize * table_count);
  if (!found) {
    fault = {CollectionFault::kCutDirectory};
    return kCollectionOutOfBounds;
  }
  directory = *found;
  return kCollectionOk;
}

std::optional<CollectionFace> TrueTypeCollectionFont::FindFace(std::uint32_t face,
                                                               CollectionFault* fault) const {
  Bytes directory;
  CollectionFault found;
  if (FindDirectory(face, directory, found) == kCollectionOk) {
    ChargeRecords(source_.budget(), directory.size() / kDirectoryEntrySize);
    auto tables = FindTables(size(), directory);
    if (auto* ranges = std::get_if<std::vector<TableRange>>(&tables)) {
      if (with_sums_) Charge(source_.budget(), ranges->size() * kTableSteps);
      return CollectionFace{directory, std::move(*ranges)};
    }
    found = std::get<CollectionFault>(tables);
  }
  if (fault != nullptr) *fault = found;
  return std::nullopt;
}

// The tables follow one another. Their directory checksums are computed anew, for `head` without clearing its
// checkSumAdjustment first: the font is for reading, not for installing.
SfntData TrueTypeCollectionFont::FontOf(const CollectionFace& face) const {
  std::vector<std::uint8_t> directory(face.directory.begin(), face.directory.end());
  std::vector<SfntData::Table> tables;
  tables.reserve(face.tables.size());
  std::size_t entry = kDirectoryHeaderSize;
  std::uint64_t offset = directory.size();
  for (const TableRange& table : face.tables) {
    const std::optional<std::uint32_t> word_sum =
        with_sums_ ? std::optional(sums_.SumOf(*file_, table).words) : std::nullopt;
    static_cast<void>(PutU32At(directory, entry + 4, word_sum.value_or(0)));
    static_cast<void>(PutU32At(directory, entry + 8, static_cast<std::uint32_t>(offset)));
    tables.push_back({table.offset, table.length, word_sum});
    entry += kDirectoryEntrySize;
    offset += Padded(table.length);
  }
  return {std::move(directory), *file_, tables, source_.budget()};
}

std::uint32_t TrueTypeCollectionFont::ChecksumOf(const CollectionFace& face, const SfntData& font) const {
  const auto directory = font.Range(0, static_cast<std::uint32_t>(face.directory.size()));
  std::uint32_t crc = Crc32(0, directory.value_or(Bytes{}));
  for (const TableRange& table : face.tables) {
    const TableSum& sum = sums_.SumOf(*file_, table);
    crc = CombineCrc32(crc, sum.crc, sum.combine);
  }
  return crc;
}

CollectionStatus TrueTypeCollectionFont::GetDataPtrForFace(std::uint32_t face, std::vector<char>& out) const {
  out.clear();
  Bytes directory;
  CollectionFault ignored;
  const CollectionStatus status = FindDirectory(face, directory, ignored);
  if (status != kCollectionOk) return status;
  // Entries that repeat or overlap could make a face larger than its collection.
  const std::uint64_t font_size = FontSize(size(), directory);
  if (font_size >= size()) return kCollectionNoFace;
  const auto found = FindTables(size(), directory);
  const auto* tables = std::get_if<std::vector<TableRange>>(&found);
  if (tables == nullptr) return kCollectionOutOfBounds;
  try {
    out.reserve(font_size);
  } catch (const std::bad_alloc&) {
    return kCollectionNoFace;
  }
  const SfntData font = FontOf({directory, *tables});
  Append(font.Range(0, static_cast<std::uint32_t>(directory.size())).value_or(Bytes{}), out);
  for (const TableRange& table : *tables) {
    Append(file_->Range(table.offset, table.length).value_or(Bytes{}), out);
    out.resize(out.size() + (Padded(table.length) - table.length));
  }
  return kCollectionOk;
}

CollectionStatus TrueTypeCollectionFont::WriteTTF(const std::vector<char>& faceData, std::uint32_t face,
                                                  const std::string& folder, std::string& writtenPath) {
  writtenPath.clear();
  if (faceData.empty()) return kCollectionNoFace;
  const std::string prefix = folder.find('/') != std::string::npos ? folder + "/" : folder;
  std::string path;
  std::filesystem::file_status existing;
  for (std::uint32_t tried = 0; tried < kMaxNamesTried; ++tried) {
    path = prefix + std::to_string(face + tried) + ".ttf";  // wraps to 0 after the largest number
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
  FileAccess access;
  FontFile file(access, collectionPath);
  const TrueTypeCollectionFont collection(file);
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
