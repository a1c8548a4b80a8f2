#include "support/property_list_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <tuple>
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
  const bool result = call();
  return std::pair(result, testing::internal::GetCapturedStdout());
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
  const auto path = Text(folder_.Path("Z\xC3\xBCrich \xE5\xAD\x97.plist"));
  const auto list = Text("value");
  EXPECT_TRUE(NCFWriteCFPropertyListToXMLFile(list.get(), path.get()));
  const auto read = Adopt(NCFCreateCFPropertyListFromPath(path.get(), kCFPropertyListImmutable));
  EXPECT_EQ(CFStringCompare(static_cast<CFStringRef>(read.get()), list.get(), 0), kCFCompareEqualTo);
}

TEST_F(PropertyListFile, ReadingPrintsItsMessagesWithoutALineEnd) {
  const std::pair<std::string, std::string> rows[] = {
      {"", ""},
      {folder_.Path("missing"), ""},
      {fifo_, ""},  // a FIFO and a device are no files to read
      {"/dev/zero", ""},
      {folder_.Write("empty", ""),
       "NCFUtils::NCFCreateCFDataRefFromPath:  error getting file length & rewinding file "},
      {folder_.Write("no list", "hello"), "NCFUtils::NCFCreateCFPropertyListFromPath:  error returned."}};
  for (const auto& [path, printed] : rows) {
    const auto name = Text(path);
    EXPECT_EQ(Printed([&] { return NCFCreateCFPropertyListFromPath(name.get(), 0) != nullptr; }),
              std::pair(false, printed));
  }
}

TEST_F(PropertyListFile, WritingPrintsItsMessagesOnLinesOfTheirOwn) {
  const std::string kept = folder_.Write("kept", "old");
  const auto data = Adopt(CFDataCreate(nullptr, AsBytes("text").data(), 4));
  const std::tuple<CFDataRef, std::string, std::string> rows[] = {
      {data.get(), "", ""},
      {data.get(), fifo_, "Error opening file for writing.\n"},
      {data.get(), "/dev/full", "Error writing to file.\n"},
      {nullptr, kept, "Failed to create buffer from CFDataRef.\n"}};
  for (const auto& [bytes, path, message] : rows) {
    const std::string origin = message.empty() ? "" : "*** NCFUtils::NCFWriteCFDataRefToXMLFile:  ";
    const auto name = Text(path);
    EXPECT_EQ(Printed([&, list = bytes] { return NCFWriteCFDataRefToXMLFile(list, name.get()); }),
              std::pair(false, origin + message));
  }
  EXPECT_EQ(ReadFile(kept), "") << "opened, and so emptied, before the data is looked at";
}

}  // namespace
}  // namespace quillmark::NCFUtils
