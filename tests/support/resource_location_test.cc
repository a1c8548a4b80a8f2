#include "support/resource_location.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "builders/temp_folder.h"
#include "platform/cf_object.h"

namespace quillmark {
namespace {

class ResourceLocation : public testing::Test {
 protected:
  void TearDown() override { unsetenv("QUILLMARK_BUNDLE"); }

  static void NameBundle(const std::string& folder) { setenv("QUILLMARK_BUNDLE", folder.c_str(), 1); }
  static bool Loads(const char* file_name) {
    return static_cast<bool>(LoadBundlePropertyList(file_name, kCFPropertyListImmutable));
  }

  TempFolder folder_;
};

TEST_F(ResourceLocation, LoadsFromTheResourcesFolderOfTheNamedBundle) {
  const std::int64_t before = cf::Object::LiveCount();
  folder_.Write("b\xC3\xBC n%20dle/Resources/List.plist", "<array/>");
  folder_.Write("other/Resources/Other.plist", "<array/>");
  NameBundle(folder_.Path("b\xC3\xBC n%20dle"));
  EXPECT_TRUE(Loads("List.plist"));
  EXPECT_FALSE(Loads("Other.plist"));
  NameBundle(folder_.Path("other"));
  EXPECT_TRUE(Loads("Other.plist")) << "the folder named at the time of the call counts";
  NameBundle(folder_.Path("missing"));
  EXPECT_FALSE(Loads("Other.plist"));
  NameBundle(folder_.Path("other/Resources/Other.plist"));
  EXPECT_FALSE(Loads("Other.plist")) << "a file is no bundle";
  EXPECT_EQ(cf::Object::LiveCount(), before);
}

TEST_F(ResourceLocation, FindsTheBundleOfTheRunningProgram) {
  namespace fs = std::filesystem;
  // build/bin/support_test lies beside build/share/quillmark.
  const fs::path bundle =
      fs::canonical("/proc/self/exe").parent_path().parent_path() / "share" / "quillmark" / "Resources";
  fs::create_directories(bundle);
  const fs::path file = bundle / ("Test" + std::to_string(getpid()) + ".plist");
  fs::copy_file(folder_.Write("x", "<string>found</string>"), file);
  EXPECT_TRUE(Loads(file.filename().c_str()));
  NameBundle("");
  EXPECT_TRUE(Loads(file.filename().c_str())) << "an empty name names nothing";
  fs::remove(file);
}

TEST_F(ResourceLocation, KnowsNoOtherBundle) {
  NameBundle(folder_.path());
  const auto find = [](const char* identifier) {
    const auto name = Adopt(CFStringCreateWithCString(nullptr, identifier, kCFStringEncodingUTF8));
    return CFBundleGetBundleWithIdentifier(name.get());
  };
  EXPECT_EQ(find("org.quillmark.quillmark"), nullptr);
  const CFBundleRef bundle = find("org.quillmark.Quillmark");
  ASSERT_NE(bundle, nullptr);
  EXPECT_EQ(find("org.quillmark.Quillmark"), bundle) << "one object as long as the folder stays";
  char text[20];
  const auto resources = Adopt(CFBundleCopyResourcesDirectoryURL(bundle));
  ASSERT_TRUE(CFStringGetCString(CFURLGetString(resources.get()), text, sizeof text, kCFStringEncodingUTF8));
  EXPECT_STREQ(text, "Resources/");
}

}  // namespace
}  // namespace quillmark
