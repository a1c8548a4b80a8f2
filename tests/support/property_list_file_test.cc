#include "support/property_list_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <utility>

#include "builders/temp_folder.h"
#include "platform/byte_reader.h"
#include "platform/cf_object.h"
#include "platform/cf_ref.h"

namespace quillmark::NCFUtils {
namespace {

CFRef<CFStringRef> Text(const std::string& text) {
  return Adopt(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

CFRef<CFDataRef> Data(std::string_view text) {
  return Adopt(CFDataCreate(nullptr, AsBytes(text).data(), static_cast<CFIndex>(text.size())));
}

// What a call returns, and what it prints on standard output.
template <typename Call>
auto Printed(Call call) {
  testing::internal::CaptureStdout();
  auto result = call();
  return std::pair(std::move(result), testing::internal::GetCapturedStdout());
}

class PropertyListFile : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(cf::Object::LiveCount(), objects_before_); }

  const std::int64_t objects_before_ = cf::Object::LiveCount();
  TempFolder folder_;
};

TEST_F(PropertyListFile, ReadsAndWritesUnderANameInUtf8) {
  const std::string path = folder_.Path("Z\xC3\xBCrich \xE5\xAD\x97.plist");
  const auto list = Text("value");
  EXPECT_TRUE(NCFWriteCFPropertyListToXMLFile(list.get(), Text(path).get()));
  const auto read = Adopt(NCFCreateCFPropertyListFromPath(Text(path).get(), kCFPropertyListImmutable));
  ASSERT_TRUE(read);
  EXPECT_EQ(CFStringCompare(static_cast<CFStringRef>(read.get()), list.get(), 0), kCFCompareEqualTo);
  EXPECT_TRUE(NCFWriteCFDataRefToXMLFile(Data("ab").get(), Text(path).get()));
  EXPECT_EQ(ReadFile(path), "ab") << "the longer file is replaced";
  EXPECT_TRUE(NCFWriteCFDataRefToXMLFile(Data("").get(), Text(path).get()));
  EXPECT_EQ(ReadFile(path), "");
}

TEST_F(PropertyListFile, ReadingPrintsItsMessagesWithoutALineEnd) {
  const std::string fifo = folder_.Path("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string length_message =
      "NCFUtils::NCFCreateCFDataRefFromPath:  error getting file length & rewinding file ";
  struct {
    std::string path;
    std::string printed;
  } const rows[] = {
      {"", ""},
      {folder_.Path("missing"), ""},
      {folder_.path(), ""},  // a folder, a FIFO and a device are no files to read
      {fifo, ""},
      {"/dev/zero", ""},
      {folder_.Write("empty", ""), length_message},
      {folder_.Write("no list", "hello"), "NCFUtils::NCFCreateCFPropertyListFromPath:  error returned."},
  };
  for (const auto& row : rows) {
    const auto [list, printed] =
        Printed([&] { return NCFCreateCFPropertyListFromPath(Text(row.path).get(), 0); });
    EXPECT_EQ(list, nullptr) << row.path;
    EXPECT_EQ(printed, row.printed) << row.path;
  }
  EXPECT_EQ(NCFCreateCFPropertyListFromPath(nullptr, 0), nullptr);
  EXPECT_EQ(NCFCreateCFDataRefFromPath(nullptr), nullptr);
  EXPECT_EQ(NCFCreateCFDataRefFromPath(Text("").get()), nullptr);
}

TEST_F(PropertyListFile, WritingPrintsItsMessagesOnLinesOfTheirOwn) {
  const std::string fifo = folder_.Path("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string kept = folder_.Write("kept", "old");
  const auto data = Data("text");
  const std::string opening = "*** NCFUtils::NCFWriteCFDataRefToXMLFile:  Error opening file for writing.\n";
  struct {
    CFDataRef data;
    std::string path;
    std::string printed;
  } const rows[] = {
      {data.get(), "", ""},
      {data.get(), folder_.path(), opening},
      {data.get(), folder_.Path("none/x"), opening},
      {data.get(), fifo, opening},  // with nobody to read it
      {data.get(), "/dev/full", "*** NCFUtils::NCFWriteCFDataRefToXMLFile:  Error writing to file.\n"},
      {nullptr, kept, "*** NCFUtils::NCFWriteCFDataRefToXMLFile:  Failed to create buffer from CFDataRef.\n"},
  };
  for (const auto& row : rows) {
    const auto [is_written, printed] =
        Printed([&] { return NCFWriteCFDataRefToXMLFile(row.data, Text(row.path).get()); });
    EXPECT_FALSE(is_written) << row.path;
    EXPECT_EQ(printed, row.printed) << row.path;
  }
  EXPECT_EQ(ReadFile(kept), "") << "opened, and so emptied, before the data is looked at";

  const auto [is_written, printed] =
      Printed([&] { return NCFWriteCFPropertyListToXMLFile(nullptr, Text(folder_.Path("list")).get()); });
  EXPECT_FALSE(is_written);
  EXPECT_EQ(
      printed,
      "*** NCFUtils::NCFWriteCFPropertyListToXMLFile:  Failed to create XML CFData from property list for "
      "writing.\n");
  EXPECT_FALSE(NCFWriteCFPropertyListToXMLFile(nullptr, nullptr));
}

TEST_F(PropertyListFile, TellsAStreamsLengthAndRewindsIt) {
  std::FILE* const file = std::fopen(folder_.Write("five", "12345").c_str(), "rb");
  ASSERT_NE(file, nullptr);
  std::fgetc(file);
  std::uint32_t length = 99;
  EXPECT_EQ(GetFileLengthAndRewind(file, &length), 0);
  EXPECT_EQ(length, 5u);
  EXPECT_EQ(std::fgetc(file), '1');
  std::fclose(file);

  EXPECT_EQ(GetFileLengthAndRewind(nullptr, &length), -1);
  EXPECT_EQ(length, 0u);

  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::FILE* const no_seeks = fdopen(ends[0], "rb");
  length = 99;
  EXPECT_EQ(GetFileLengthAndRewind(no_seeks, &length), ESPIPE);
  EXPECT_EQ(length, 0u);
  std::fclose(no_seeks);
  close(ends[1]);
}

}  // namespace
}  // namespace quillmark::NCFUtils
