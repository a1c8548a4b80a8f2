// TrueTypeCollectionFont: cuts the faces of a collection (OpenType font collections) into stand-alone sfnt
// fonts, as copies or in place. To sum its tables the file is read whole once; only the bytes that are asked
// for afterwards stay in memory. For one thread at a time. Tests: tests/analysis/collection_test.cc;
// fuzz/collection_fuzzer.cc.
#ifndef QUILLMARK_ANALYSIS_COLLECTION_H_
#define QUILLMARK_ANALYSIS_COLLECTION_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/sfnt_data.h"
#include "analysis/table_sums.h"
#include "platform/byte_reader.h"
#include "platform/files/font_file.h"
#include "platform/files/paged_file.h"

namespace quillmark {

enum CollectionStatus : std::uint32_t {
  kCollectionOk = 0,
  kCollectionNoFace = 1,        // no such face, an empty face, or one not smaller than the file
  kCollectionWrongTag = 2,      // not a collection
  kCollectionWrongVersion = 3,  // an empty file, or a version that is not known
  kCollectionFileError = 4,     // not opened, examined, read or written
  kCollectionOutOfBounds = 5,   // too short, or a face or table lies outside
};

// Why a face cannot be cut out.
struct CollectionFault {
  enum Kind {
    kCutList,           // the file ends inside the list of faces
    kDirectoryPastEnd,  // the face's table directory lies at byte `end`, and the file has `size`
    kCutDirectory,      // the file ends inside the directory
    kTablePastEnd,      // the table `tag` runs to byte `end`, and the file has `size`
    kCutPadding,        // with its padding it runs to byte `end`
    kNotSmaller         // cut out, the face would be no smaller than the file
  };
  Kind kind = kCutList;
  std::uint64_t end = 0;
  std::uint64_t size = 0;
  std::uint32_t tag = 0;
};

// A face that can be cut out, as it lies in the collection, which must outlive it.
struct CollectionFace {
  Bytes directory;
  // In the order of the directory; each lies inside the file, padding included.
  std::vector<TableRange> tables;
};

class TrueTypeCollectionFont {
 public:
  // Reads the file, which outlives the object and whose budget is charged; a failed read leaves no faces.
  // Without sums only what is parsed is read, and no face can be summed or copied.
  explicit TrueTypeCollectionFont(FontFile& file, bool with_sums = true);
  virtual ~TrueTypeCollectionFont() = default;
  TrueTypeCollectionFont(const TrueTypeCollectionFont&) = delete;
  TrueTypeCollectionFont& operator=(const TrueTypeCollectionFont&) = delete;

  CollectionStatus ReadIntoMemory();
  // Of the last ReadIntoMemory.
  CollectionStatus status() const { return status_; }
  std::uint32_t faceCount() const;
  // How many entries of the list of faces lie inside the file. Faces from this index on all fail for the same
  // reason, however many the header claims.
  std::uint32_t listedFaceCount() const;
  // Where the face's table directory begins; faces that share it are one font. Nothing outside the list.
  std::optional<std::uint32_t> directoryOffset(std::uint32_t face) const;

  // The face, or nothing when GetDataPtrForFace would fail; `fault` (may be null) then receives the reason.
  // The offsets in its directory are still those of the collection.
  std::optional<CollectionFace> FindFace(std::uint32_t face, CollectionFault* fault = nullptr) const;
  // The stand-alone font of a face, of which only the directory is copied; without sums the checksums in it
  // are 0. It must not outlive the collection.
  SfntData FontOf(const CollectionFace& face) const;
  // The CRC-32 of that font's bytes.
  std::uint32_t ChecksumOf(const CollectionFace& face, const SfntData& font) const;

  // Fills `out` with the stand-alone font of a face (index from 0); empties it on any failure.
  [[nodiscard]] CollectionStatus GetDataPtrForFace(std::uint32_t face, std::vector<char>& out) const;

  // Writes face data to FOLDER/N.ttf with the first free N from `face` on, of 100 tried; the last one tried
  // is overwritten. A folder's name without any "/" is joined to N without one.
  [[nodiscard]] static CollectionStatus WriteTTF(const std::vector<char>& faceData, std::uint32_t face,
                                                 const std::string& folder, std::string& writtenPath);
  // Cuts out and writes every face. Returns the status of the last one that failed.
  [[nodiscard]] static CollectionStatus SeparateTTCFonts(const std::string& collectionPath,
                                                         const std::string& folder,
                                                         std::vector<std::string>& writtenPaths);

 private:
  CollectionStatus FindDirectory(std::uint32_t face, Bytes& directory, CollectionFault& fault) const;

  CollectionStatus ReadWhole();
  std::size_t size() const { return file_ ? file_->size() : 0; }
  std::optional<std::uint32_t> NumberAt(std::size_t offset) const;

  FontFile& source_;
  const bool with_sums_;
  CollectionStatus status_ = kCollectionFileError;
  std::optional<PagedFile> file_;  // none after any failure
  mutable TableSums sums_;
};

}  // namespace quillmark

#endif
