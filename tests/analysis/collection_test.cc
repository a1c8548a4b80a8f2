#include "analysis/collection.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <tuple>

#include "builders/big_endian.h"
#include "builders/collection_builder.h"
#include "builders/temp_folder.h"
#include "platform/crc32.h"

namespace quillmark {
namespace {

using big_endian::Set32;

SfntBuilder Face(const std::string& name) {
  return SfntBuilder().Table("glyf", std::string(400, 'g')).Table("odd ", "12345").MacName(4, name);
}

class Collection : public testing::Test {
 protected:
  // The status of reading the file, and its faces.
  CollectionStatus Load(const std::string& bytes, std::uintmax_t size = 0) {
    const std::string path = folder_.Write("fonts.ttc", bytes);
    if (size != 0) std::filesystem::resize_file(path, size);
    collection_.reset();
    file_ = std::make_unique<FontFile>(access_, path);
    collection_ = std::make_unique<TrueTypeCollectionFont>(*file_);
    return collection_->ReadIntoMemory();
  }
  // Cuts a face out; read in place it must be the same font.
  CollectionStatus Cut(std::uint32_t face) {
    out_ = {'o', 'l', 'd'};
    const CollectionStatus status = collection_->GetDataPtrForFace(face, out_);
    const auto found = collection_->FindFace(face);
    EXPECT_EQ(found.has_value(), status == kCollectionOk);
    EXPECT_EQ(out_.empty(), status != kCollectionOk);
    if (!found) return status;
    const Bytes bytes = AsBytes({out_.data(), out_.size()});
    const SfntData font = collection_->FontOf(*found);
    EXPECT_EQ(AsText(font.Range(0, font.size()).value()), AsText(bytes));
    EXPECT_EQ(collection_->ChecksumOf(*found, font), Crc32(0, bytes));
    for (std::size_t entry = 12; entry < found->directory.size(); entry += 16) {
      const std::uint32_t offset = U32At(bytes, entry + 8).value();
      const std::uint32_t length = U32At(bytes, entry + 12).value();
      EXPECT_EQ(U32At(bytes, entry + 4), SumBigEndianWords(bytes.subspan(offset, length)));
      EXPECT_EQ(font.SumOfWords(offset, length), U32At(bytes, entry + 4));
    }
    return status;
  }

  TempFolder folder_;
  FileAccess access_;
  std::unique_ptr<FontFile> file_;
  std::unique_ptr<TrueTypeCollectionFont> collection_;
  std::vector<char> out_;
};

std::string With(std::string bytes, std::size_t at, std::uint32_t value) {
  Set32(bytes, at, value);
  return bytes;
}

TEST_F(Collection, RefusesFilesThatAreNoCollection) {
  const std::string good = CollectionBuilder().Face(Face("One")).Build();
  EXPECT_EQ(Load(With(good, 4, 0x00020000)), kCollectionOk);
  EXPECT_EQ(Load(With(good, 4, 0x00030000)), kCollectionWrongVersion);
  EXPECT_EQ(Load(Face("One").Build()), kCollectionWrongTag);
  EXPECT_EQ(Load(""), kCollectionWrongVersion);
  EXPECT_EQ(Load("ttc"), kCollectionWrongTag);
  EXPECT_EQ(Load(good.substr(0, 12)), kCollectionOutOfBounds);
  EXPECT_EQ(Load(good.substr(0, 13)), kCollectionOk);
  EXPECT_EQ(Load(good, 5ull << 30), kCollectionFileError);
}

TEST_F(Collection, FacesMustFitTheFile) {
  const std::string good = CollectionBuilder().Face(Face("One")).Face(Face("Two")).Trailer("x").Build();
  const auto size = static_cast<std::uint32_t>(good.size());
  const std::size_t entry = 32;  // of the first face's first table
  const std::string no_tables = With(good, 12, size) + SfntHeader(0x00010000, 0);
  const SfntBuilder two = SfntBuilder().Table("aaaa", std::string(100, 'a')).Table("bbbb", "");
  const std::string repeating = With(CollectionBuilder().Face(two).Build(), 52, 60);  // 160 bytes
  const std::tuple<const char*, std::string, CollectionStatus> rows[] = {
      {"only its header inside", With(good, 12, size - 12), kCollectionOutOfBounds},
      {"directory whose end wraps", With(good, 12, 0xFFFFFFF8), kCollectionOutOfBounds},
      {"table whose end wraps", With(good, entry + 8, 0xFFFFFFFC), kCollectionOutOfBounds},
      {"table up to the last byte", With(good, entry + 8, size - 400), kCollectionOk},
      {"table past it", With(good, entry + 8, size - 399), kCollectionOutOfBounds},
      {"longest table", With(good, entry + 12, 0xFFFFFFFF), kCollectionNoFace},
      {"no byte behind the directory", no_tables, kCollectionOutOfBounds},
      {"one byte behind it", no_tables + "x", kCollectionOk},
      {"face of 156 bytes", With(repeating, 56, 12), kCollectionOk},
      {"face as large as the file", With(repeating, 56, 13), kCollectionNoFace},
  };
  for (const auto& [what, bytes, status] : rows) {
    EXPECT_EQ(Load(bytes), kCollectionOk) << what;
    EXPECT_EQ(Cut(0), status) << what;
  }
}

TEST_F(Collection, SeparatesFacesUnderFreeNumbersAndRemembersTheLastFailure) {
  CollectionBuilder three;
  three.Face(Face("One")).Face(Face("Two")).Face(Face("Three"));
  const std::string path = folder_.Write("a.ttc", With(three.Build(), 16, 0xFFFFFFFF));
  folder_.Write("0.ttf", "taken");
  std::vector<std::string> written;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(path, folder_.path(), written), kCollectionOutOfBounds);
  EXPECT_EQ(written, (std::vector<std::string>{folder_.Path("1.ttf"), folder_.Path("2.ttf")}));
  EXPECT_EQ(ReadFile(folder_.Path("2.ttf")), Face("Three").Build());
  EXPECT_EQ(TrueTypeCollectionFont::WriteTTF({'x'}, 0, "/nowhere", written[0]), kCollectionFileError);
}

// Tables are put together from steps of the file, wherever their words begin.
TEST_F(Collection, LongTablesThatOverlapAreSummedAsTheyStand) {
  std::string glyphs;
  for (std::uint32_t i = 0; i < 20'000; ++i) glyphs += static_cast<char>(i * 31 + i / 251);
  CollectionBuilder builder;
  for (int face = 0; face < 40; ++face) builder.Face(SfntBuilder().Table("glyf", glyphs));
  std::string bytes = builder.Build();
  for (std::uint32_t face = 0; face < 40; ++face) {
    const std::size_t entry = 12 + 40 * 4 + face * std::size_t{28} + 12;
    Set32(bytes, entry + 8, U32At(AsBytes(bytes), entry + 8).value() + face * 7);
    Set32(bytes, entry + 12, face < 30 ? 20'000 - face * 300 : (face - 29) * 300);
  }
  ASSERT_EQ(Load(bytes), kCollectionOk);
  for (std::uint32_t face = 0; face < 40; ++face) EXPECT_EQ(Cut(face), kCollectionOk) << face;
}

}  // namespace
}  // namespace quillmark
