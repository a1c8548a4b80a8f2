#include "support/resource_location.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "builders/temp_folder.h"
#include "platform/core_foundation/cf_object.h"

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
  NameBundle(folder_.Path("other/Resources/Other.plist"));
  EXPECT_FALSE(Loads("Other.plist")) << "a file is no bundle";
  EXPECT_EQ(cf::Object::LiveCount(), before);
}

TEST_F(ResourceLocation, KnowsOneBundleAsLongAsItsFolderStays) {
  NameBundle(folder_.path());
  const auto find = [](const char* identifier) {
    const auto name = Adopt(CFStringCreateWithCString(nullptr, identifier, kCFStringEncodingUTF8));
    return CFBundleGetBundleWithIdentifier(name.get());
  };
  EXPECT_EQ(find("org.quillmark.quillmark"), nullptr);
  const CFBundleRef bundle = find("org.quillmark.Quillmark");
  EXPECT_TRUE(bundle && find("org.quillmark.Quillmark") == bundle);
}

}  // namespace
}  // namespace quillmark
