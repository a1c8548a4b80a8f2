#include "support/resource_location.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "builders/temp_folder.h"
#include "platform/core_foundation/cf_object.h"

namespace quillmark {
namespace {

TEST(ResourceLocation, IsTheResourcesFolderOfTheNamedBundle) {
  const std::int64_t before = cf::Object::LiveCount();
  const TempFolder folder;
  folder.Write("b\xC3\xBC n%20dle/Resources/List.plist", "<array/>");
  folder.Write("other/Resources/Other.plist", "<array/>");
  const auto loads = [&](const std::string& bundle, const char* file_name) {
    setenv("QUILLMARK_BUNDLE", folder.Path(bundle).c_str(), 1);
    return static_cast<bool>(LoadBundlePropertyList(file_name, kCFPropertyListImmutable));
  };
  EXPECT_TRUE(loads("b\xC3\xBC n%20dle", "List.plist"));
  EXPECT_FALSE(loads("b\xC3\xBC n%20dle", "Other.plist"));
  EXPECT_TRUE(loads("other", "Other.plist")) << "the folder named at the time of the call counts";
  EXPECT_FALSE(loads("other/Resources/Other.plist", "Other.plist")) << "a file is no bundle";
  EXPECT_EQ(cf::Object::LiveCount(), before) << "a bundle stays, but is not counted";

  setenv("QUILLMARK_BUNDLE", folder.path().c_str(), 1);
  const auto find = [](const char* identifier) {
    const auto name = Adopt(CFStringCreateWithCString(nullptr, identifier, kCFStringEncodingUTF8));
    return CFBundleGetBundleWithIdentifier(name.get());
  };
  EXPECT_EQ(find("org.quillmark.quillmark"), nullptr);
  const CFBundleRef bundle = find("org.quillmark.Quillmark");
  EXPECT_TRUE(bundle && find("org.quillmark.Quillmark") == bundle) << "as long as its folder stays";
  unsetenv("QUILLMARK_BUNDLE");
}

}  // namespace
}  // namespace quillmark
