#include "support/property_list_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <utility>

#include "builders/temp_folder.h"
#include "platform/byte_reader.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"

namespace quillmark::NCFUtils {
namespace {

CFRef<CFStringRef> Text(const std::string& text) {
  return Adopt(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
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

  void SetUp() override { ASSERT_EQ(mkfifo(fifo_.c_str(), 0600), 0); }
  const std::int64_t objects_before_ = cf::Object::LiveCount();
  const TempFolder folder_;
  const std::string fifo_ = folder_.Path("fifo");  // with nobody at the other end
};

TEST_F(PropertyListFile, ReadsAndWritesUnderANameInUtf8) {
  const std::string path = folder_.Path("Z\xC3\xBCrich \xE5\xAD\x97.plist");
  const auto list = Text("value");
  EXPECT_TRUE(NCFWriteCFPropertyListToXMLFile(list.get(), Text(path).get()));
  const auto read = Adopt(NCFCreateCFPropertyListFromPath(Text(path).get(), kCFPropertyListImmutable));
  ASSERT_TRUE(read);
  EXPECT_EQ(CFStringCompare(static_cast<CFStringRef>(read.get()), list.get(), 0), kCFCompareEqualTo);
}

TEST_F(PropertyListFile, ReadingPrintsItsMessagesWithoutALineEnd) {
  const std::string length_message =
      "NCFUtils::NCFCreateCFDataRefFromPath:  error getting file length & rewinding file ";
  struct {
    std::string path;
    std::string printed;
  } const rows[] = {
      {"", ""},
      {folder_.Path("missing"), ""},
      {fifo_, ""},  // a FIFO and a device are no files to read
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
}

TEST_F(PropertyListFile, WritingPrintsItsMessagesOnLinesOfTheirOwn) {
  const std::string kept = folder_.Write("kept", "old");
  const auto data = Adopt(CFDataCreate(nullptr, AsBytes("text").data(), 4));
  const std::string opening = "*** NCFUtils::NCFWriteCFDataRefToXMLFile:  Error opening file for writing.\n";
  struct {
    CFDataRef data;
    std::string path;
    std::string printed;
  } const rows[] = {
      {data.get(), "", ""},
      {data.get(), fifo_, opening},
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
}

}  // namespace
}  // namespace quillmark::NCFUtils
