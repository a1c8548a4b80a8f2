// The property lists of the library's bundle: where they lie, how they are read, and the values in them.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>

#include "builders/temp_folder.h"
#include "platform/core_foundation/cf_object.h"
#include "platform/core_foundation/cf_ref.h"
#include "support/om_string.h"
#include "support/property_list_file.h"
#include "support/property_list_values.h"
#include "support/resource_location.h"

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

class BundlePropertyList : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(cf::Object::LiveCount(), objects_before_); }
  void SetUp() override { ASSERT_EQ(mkfifo(fifo_.c_str(), 0600), 0); }
  const std::int64_t objects_before_ = cf::Object::LiveCount();
  const TempFolder folder_;
  const std::string fifo_ = folder_.Path("fifo");  // with nobody at the other end
};

TEST_F(BundlePropertyList, LiesInTheResourcesFolderOfTheNamedBundle) {
  folder_.Write("b\xC3\xBC n%20dle/Resources/List.plist", "<array/>");
  folder_.Write("other/Resources/Other.plist", "<array/>");
  const auto loads = [&](const std::string& bundle, const char* file_name) {
    setenv("QUILLMARK_BUNDLE", folder_.Path(bundle).c_str(), 1);
    return static_cast<bool>(LoadBundlePropertyList(file_name, kCFPropertyListImmutable));
  };
  EXPECT_TRUE(loads("b\xC3\xBC n%20dle", "List.plist"));
  EXPECT_FALSE(loads("b\xC3\xBC n%20dle", "Other.plist"));
  EXPECT_TRUE(loads("other", "Other.plist")) << "the folder named at the time of the call counts";
  EXPECT_FALSE(loads("other/Resources/Other.plist", "Other.plist")) << "a file is no bundle";

  setenv("QUILLMARK_BUNDLE", folder_.path().c_str(), 1);
  const auto find = [](const char* identifier) {
    return CFBundleGetBundleWithIdentifier(Text(identifier).get());
  };
  EXPECT_EQ(find("org.quillmark.quillmark"), nullptr);
  const CFBundleRef bundle = find("org.quillmark.Quillmark");
  EXPECT_TRUE(bundle && find("org.quillmark.Quillmark") == bundle) << "as long as its folder stays";
  unsetenv("QUILLMARK_BUNDLE");
}

TEST_F(BundlePropertyList, ReadingPrintsItsMessagesWithoutALineEnd) {
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

TEST_F(BundlePropertyList, IsWrittenWithAMessageForWhatFails) {
  const std::string path = folder_.Path("Z\xC3\xBCrich.plist");
  const std::pair<std::string, std::string> rows[] = {
      {path, ""}, {fifo_, "Error opening file for writing.\n"}, {"/dev/full", "Error writing to file.\n"}};
  for (const auto& [file, message] : rows) {
    const std::string origin = message.empty() ? "" : "*** NCFUtils::NCFWriteCFDataRefToXMLFile:  ";
    const auto name = Text(file);
    EXPECT_EQ(Printed([&] { return NCFWriteCFPropertyListToXMLFile(Text("value").get(), name.get()); }),
              std::pair(message.empty(), origin + message));
  }
  EXPECT_NE(ReadFile(path).find("\n<string>value</string>\n"), std::string::npos);
}

TEST_F(BundlePropertyList, ValuesAnswerForTheirTypeOnly) {
  const auto owned = Adopt(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                     &kCFTypeDictionaryValueCallBacks));
  const auto name = Text("key");
  const CFMutableDictionaryRef dict = owned.get();
  const CFStringRef key = name.get();
  std::int32_t number = 77;
  bool truth = true;
  EXPECT_FALSE(GetLongFromDict(dict, key, number));
  EXPECT_TRUE(PutLongIntoDict(dict, key, 1));
  EXPECT_EQ(GetCFStringFromDict(dict, key), nullptr);
  EXPECT_FALSE(GetBoolFromDict(dict, key, truth)) << "the number 1 is no boolean";
  EXPECT_TRUE(PutBoolIntoDict(dict, key, false));
  EXPECT_FALSE(GetLongFromDict(dict, key, number)) << "a boolean is no number";
  EXPECT_TRUE(number == 77 && truth) << "both untouched";
  EXPECT_TRUE(PutUnsignedLongIntoDict(dict, key, 0xFF000001u) && GetLongFromDict(dict, key, number));
  EXPECT_EQ(number, -0xFFFFFF);
  EXPECT_TRUE(PutNullTermCharPtrIntoDict(dict, key, "\x8E", kCFStringEncodingMacRoman));
  EXPECT_FALSE(PutCStringIntoDict(dict, key, "\x8E")) << "no UTF-8";
  EXPECT_EQ(OmString(GetCFStringFromDict(dict, key)).str(), "\u00E9") << "the old one is still there";
}

}  // namespace
}  // namespace quillmark::NCFUtils
