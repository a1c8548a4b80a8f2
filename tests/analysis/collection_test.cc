#include "analysis/collection.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "analysis/crc32.h"
#include "builders/big_endian.h"
#include "builders/collection_builder.h"
#include "builders/temp_folder.h"

namespace quillmark {
namespace {

using big_endian::Set16;
using big_endian::Set32;

SfntBuilder Face(const std::string& name) {
  return SfntBuilder().Table("glyf", std::string(400, 'g')).Table("odd ", "12345").MacName(4, name);
}

class Collection : public testing::Test {
 protected:
  // The status of reading the file, and its faces.
  CollectionStatus Load(const std::string& bytes) {
    path_ = folder_.Write(std::to_string(++files_) + ".ttc", bytes);
    collection_ = std::make_unique<TrueTypeCollectionFont>(path_);
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
    const std::string bytes = out();
    const SfntData font = collection_->FontOf(*found);
    EXPECT_EQ(collection_->ChecksumOf(*found, font), Crc32(0, AsBytes(bytes)));
    for (std::size_t entry = 12; entry < found->directory.size(); entry += 16) {
      const std::uint32_t offset = U32At(AsBytes(bytes), entry + 8).value();
      const std::uint32_t length = U32At(AsBytes(bytes), entry + 12).value();
      const std::uint32_t sum = SumBigEndianWords(AsBytes(bytes).subspan(offset, length));
      EXPECT_EQ(U32At(AsBytes(bytes), entry + 4), sum);
      EXPECT_EQ(font.SumOfWords(offset, length), sum);
      EXPECT_EQ(AsText(font.Range(offset, length).value()), bytes.substr(offset, length));
    }
    EXPECT_EQ(font.size(), bytes.size());
    EXPECT_EQ(AsText(font.Range(0, font.size()).value()), bytes);
    return status;
  }
  std::string out() const { return {out_.begin(), out_.end()}; }

  TempFolder folder_;
  int files_ = 0;
  std::string path_;
  std::unique_ptr<TrueTypeCollectionFont> collection_;
  std::vector<char> out_;
};

TEST_F(Collection, AFaceIsTheFontThatWentIn) {
  const std::vector<SfntBuilder> fonts = {Face("One"), Face("Two"),
                                          Face("Three").Version(FourCharCode("OTTO"))};
  const std::string bytes =
      CollectionBuilder().Face(fonts[0]).Face(fonts[1]).SameFaceAs(0).Face(fonts[2]).Trailer("end").Build();
  ASSERT_EQ(Load(bytes), kCollectionOk);
  ASSERT_EQ(collection_->faceCount(), 4u);
  EXPECT_EQ(collection_->listedFaceCount(), 4u);
  EXPECT_EQ(collection_->directoryOffset(2), collection_->directoryOffset(0));
  EXPECT_NE(collection_->directoryOffset(1), collection_->directoryOffset(0));
  EXPECT_EQ(collection_->directoryOffset(4), std::nullopt);
  for (const auto& [face, font] : {std::pair(0u, 0u), {1u, 1u}, {2u, 0u}, {3u, 2u}}) {
    EXPECT_EQ(Cut(face), kCollectionOk);
    EXPECT_EQ(out(), fonts[font].Build()) << face;
  }
  EXPECT_EQ(Cut(4), kCollectionNothing);
  EXPECT_EQ(out(), "");
}

TEST_F(Collection, RefusesFilesThatAreNoCollection) {
  const std::string good = CollectionBuilder().Face(Face("One")).Build();
  const struct {
    const char* what;
    std::string bytes;
    CollectionStatus status;
  } rows[] = {
      {"sound", good, kCollectionOk},
      {"version 2", CollectionBuilder().Version(0x00020000).Face(Face("One")).Build(), kCollectionOk},
      {"version 3", CollectionBuilder().Version(0x00030000).Face(Face("One")).Build(),
       kCollectionWrongVersion},
      {"a single font", Face("One").Build(), kCollectionWrongTag},
      {"empty", "", kCollectionWrongVersion},
      {"3 bytes", "ttc", kCollectionWrongTag},
      {"12 bytes", good.substr(0, 12), kCollectionOutOfBounds},
      {"13 bytes", good.substr(0, 13), kCollectionOk},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Load(row.bytes), row.status);
    EXPECT_EQ(collection_->faceCount(), row.status == kCollectionOk ? 1u : 0u);
  }
  const std::string huge = folder_.Write("huge.ttc", good);
  std::filesystem::resize_file(huge, 5ull << 30);
  for (const std::string& path : {huge, folder_.path(), folder_.Path("missing")}) {
    EXPECT_EQ(TrueTypeCollectionFont(path).ReadIntoMemory(), kCollectionFileError) << path;
  }
}

TEST_F(Collection, FacesMustLieInsideTheFile) {
  const std::string good = CollectionBuilder().Face(Face("One")).Face(Face("Two")).Trailer("x").Build();
  const auto size = static_cast<std::uint32_t>(good.size());
  const std::size_t directory = 20;  // of the first face
  const std::size_t first_entry = directory + 12;
  const auto cut_with = [&](std::size_t at, std::uint32_t value) {
    std::string spoiled = good;
    Set32(spoiled, at, value);
    EXPECT_EQ(Load(spoiled), kCollectionOk);
    return Cut(0);
  };
  EXPECT_EQ(cut_with(12, size), kCollectionOutOfBounds);
  EXPECT_EQ(cut_with(12, size - 12), kCollectionOutOfBounds);
  EXPECT_EQ(cut_with(12, 0xFFFFFFFF), kCollectionOutOfBounds);
  EXPECT_EQ(cut_with(12, 0xFFFFFFF8), kCollectionOutOfBounds);
  EXPECT_EQ(cut_with(first_entry + 8, 0xFFFFFFFC), kCollectionOutOfBounds);
  EXPECT_EQ(cut_with(first_entry + 8, size - 400), kCollectionOk) << "the last byte of the file is used";
  EXPECT_EQ(cut_with(first_entry + 8, size - 399), kCollectionOutOfBounds);
  EXPECT_EQ(cut_with(first_entry + 12, 0xFFFFFFFF), kCollectionNothing) << "not smaller than the file";
  EXPECT_EQ(cut_with(directory + 4, 0xFFFF0000), kCollectionOutOfBounds) << "65535 tables";

  // A byte must follow the directory, even one without tables.
  for (const auto& [behind, status] : {std::pair("", kCollectionOutOfBounds), {"x", kCollectionOk}}) {
    std::string bytes = good + SfntHeader(0x00010000, 0) + behind;
    Set32(bytes, 12, size);
    ASSERT_EQ(Load(bytes), kCollectionOk);
    EXPECT_EQ(Cut(0), status);
  }

  // The padding of a table must lie inside as well.
  const SfntBuilder odd_last = SfntBuilder().Table("pad ", std::string(80, 'p')).Table("last", "12345");
  const std::string padded = CollectionBuilder().Face(odd_last).Build();
  ASSERT_EQ(Load(padded), kCollectionOk);
  EXPECT_EQ(Cut(0), kCollectionOk);
  ASSERT_EQ(Load(padded.substr(0, padded.size() - 1)), kCollectionOk);
  EXPECT_EQ(Cut(0), kCollectionOutOfBounds);
}

TEST_F(Collection, AFaceNotSmallerThanTheFileIsRefused) {
  const SfntBuilder font = SfntBuilder().Table("aaaa", std::string(100, 'a')).Table("bbbb", "");
  std::string bytes = CollectionBuilder().Face(font).Build();
  const std::size_t second = 16 + 12 + 16;  // its entry repeats the first one's bytes
  Set32(bytes, second + 8, 60);
  Set32(bytes, second + 12, 12);  // 156 of 160 bytes
  ASSERT_EQ(bytes.size(), 160u);
  ASSERT_EQ(Load(bytes), kCollectionOk);
  EXPECT_EQ(Cut(0), kCollectionOk);
  Set32(bytes, second + 12, 13);
  ASSERT_EQ(Load(bytes), kCollectionOk);
  EXPECT_EQ(Cut(0), kCollectionNothing);
  EXPECT_EQ(out(), "");
}

TEST_F(Collection, ACountBeyondTheListFailsWithoutAWalk) {
  std::string bytes = CollectionBuilder().Face(Face("One")).Build();
  Set32(bytes, 8, 0xFFFFFFFF);
  ASSERT_EQ(Load(bytes), kCollectionOk);
  EXPECT_EQ(collection_->faceCount(), 0xFFFFFFFFu);
  EXPECT_EQ(collection_->listedFaceCount(), (bytes.size() - 13) / 4);
  EXPECT_EQ(Cut(collection_->listedFaceCount()), kCollectionOutOfBounds);
  EXPECT_EQ(Cut(0xFFFFFFFE), kCollectionOutOfBounds);
  EXPECT_EQ(Cut(0xFFFFFFFF), kCollectionNothing);
  std::vector<std::string> written;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(path_, folder_.path(), written), kCollectionOutOfBounds);
  EXPECT_EQ(written.front(), folder_.path() + "/0.ttf");
}

TEST_F(Collection, WritesFacesUnderTheFirstFreeNumber) {
  const std::vector<char> data = {'d', 'a', 't', 'a'};
  const std::string folder = folder_.path() + "/";
  std::string written = "old";
  EXPECT_EQ(TrueTypeCollectionFont::WriteTTF({}, 0, folder, written), kCollectionNothing);
  EXPECT_EQ(written, "");
  folder_.Write("7.ttf", "");
  ASSERT_EQ(TrueTypeCollectionFont::WriteTTF(data, 7, folder, written), kCollectionOk);
  EXPECT_EQ(written, folder + "/8.ttf");
  EXPECT_EQ(ReadFile(written), "data");
  for (int n = 0; n < 100; ++n) folder_.Write(std::to_string(n) + ".ttf", "taken");
  ASSERT_EQ(TrueTypeCollectionFont::WriteTTF(data, 0, folder, written), kCollectionOk);
  EXPECT_EQ(written, folder + "/99.ttf");
  EXPECT_EQ(ReadFile(written), "data");
  EXPECT_EQ(TrueTypeCollectionFont::WriteTTF(data, 0, folder_.Path("missing"), written),
            kCollectionFileError);
  EXPECT_EQ(written, "");
  folder_.Write("4294967295.ttf", "taken");
  std::filesystem::remove(folder_.Path("0.ttf"));
  EXPECT_EQ(TrueTypeCollectionFont::WriteTTF(data, 0xFFFFFFFF, folder, written), kCollectionOk);
  EXPECT_EQ(written, folder + "/0.ttf");

  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  EXPECT_EQ(TrueTypeCollectionFont::WriteTTF(data, 3, "face", written), kCollectionOk);
  std::filesystem::current_path(before);
  EXPECT_EQ(written, "face3.ttf");
}

TEST_F(Collection, SeparatesEveryFaceAndRemembersTheLastFailure) {
  std::string bytes = CollectionBuilder().Face(Face("One")).Face(Face("Two")).Face(Face("Three")).Build();
  Set32(bytes, 16, 0xFFFFFFFF);
  const std::string path = folder_.Write("a.ttc", bytes);
  std::vector<std::string> written;
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(path, folder_.path(), written), kCollectionOutOfBounds);
  EXPECT_EQ(written, (std::vector<std::string>{folder_.Path("0.ttf"), folder_.Path("2.ttf")}));
  EXPECT_EQ(ReadFile(folder_.Path("2.ttf")), Face("Three").Build());
  EXPECT_EQ(TrueTypeCollectionFont::SeparateTTCFonts(folder_.Path("missing"), folder_.path(), written),
            kCollectionOk);
}

TEST_F(Collection, SpoiledFilesNeverCutAFaceThatDoesNotFit) {
  const std::string good =
      CollectionBuilder().Face(Face("One")).Face(Face("Two")).SameFaceAs(0).Trailer("end").Build();
  int cut = 0;
  const auto check = [&](const std::string& bytes) {
    static_cast<void>(Load(bytes));
    for (std::uint32_t face = 0; face < 4; ++face) {
      cut += Cut(face) == kCollectionOk;
      ASSERT_TRUE(out_.empty() || out_.size() < bytes.size());
    }
  };
  for (std::size_t size = 0; size <= good.size(); ++size) check(good.substr(0, size));
  const std::size_t headers_end = 12 + 3 * 4 + 2 * (12 + 3 * 16);
  for (std::size_t at = 0; at < headers_end; at += 2) {
    for (const std::uint32_t value : {0x0000u, 0x0001u, 0xFFFFu}) {
      SCOPED_TRACE(testing::Message() << "field at " << at << " set to " << value);
      std::string spoiled = good;
      Set16(spoiled, at, value);
      check(spoiled);
      Set32(spoiled, at, value == 0xFFFF ? 0xFFFFFFFF : value);
      check(spoiled);
    }
  }
  EXPECT_GT(cut, 0);
}

// Ranges that overlap are summed in steps once they are more than the file.
TEST_F(Collection, LongTablesThatOverlapAreSummedAsTheyStand) {
  std::string glyphs;
  for (std::uint32_t i = 0; i < 20'000; ++i) glyphs += static_cast<char>(i * 31 + i / 251);
  CollectionBuilder builder;
  for (int face = 0; face < 40; ++face) builder.Face(SfntBuilder().Table("glyf", glyphs));
  std::string bytes = builder.Build();
  for (std::uint32_t face = 0; face < 40; ++face) {
    const std::size_t entry = 12 + 40 * 4 + face * std::size_t{28} + 12;
    const std::uint32_t offset = U32At(AsBytes(bytes), entry + 8).value();
    Set32(bytes, entry + 8, offset + face * 7);
    Set32(bytes, entry + 12, face < 30 ? 20'000 - face * 300 : (face - 29) * 300);
  }
  ASSERT_EQ(Load(bytes), kCollectionOk);
  for (std::uint32_t face = 0; face < 40; ++face) EXPECT_EQ(Cut(face), kCollectionOk) << face;
}

}  // namespace
}  // namespace quillmark
