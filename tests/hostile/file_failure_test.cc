// Every call that reads a file fails, comes short, or finds the file shrunk: creation answers 1, or tells
// what it could read; it leaves no descriptor open and no object behind, and the next one gives what it
// always gave.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>

#include "builders/exported_calls.h"
#include "builders/temp_folder.h"
#include "hostile/failing_files.h"
#include "hostile/sample_files.h"
#include "knowledge/classification_mappings.h"
#include "knowledge/foundry_name_table.h"
#include "knowledge/keyword_table.h"
#include "knowledge/small_tables.h"
#include "platform/core_foundation/cf_object.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr struct {
  FileFault fault;
  const char* name;
  bool is_harmless;  // what comes late is asked for again
} kFaults[] = {
    {FileFault::kFails, "fails", false},
    {FileFault::kAllFail, "and all after it fail", false},
    {FileFault::kInterrupted, "is interrupted", true},
    {FileFault::kShort, "comes short", true},
    {FileFault::kEnds, "ends", false},
    {FileFault::kShrinks, "shrinks the file", false},
};

std::ptrdiff_t OpenDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return std::distance(begin(descriptors), end(descriptors));
}

struct Created {
  std::int32_t status = 0;
  std::uint32_t faces = 0;
  std::string everything;
};

Created CreateWith(const std::string& path, FileFault fault, std::int64_t number, bool* happened) {
  QM_FontArray* array = nullptr;
  Created created;
  {
    const FailingFile failure(fault, number);
    created.status = QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array);
    *happened = failure.happened();
  }
  const OwnedArray owned(array);
  created.faces = owned ? CountOf(array) : 0;
  created.everything = EverythingOf(array);
  return created;
}

TEST(FileFailure, LeavesCreationWhole) {
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    const TempFolder folder;
    if (!WriteSample(folder.path(), sample)) continue;  // no extended attributes
    const std::string path = folder.Path(sample.font);
    const std::string right = EverythingOf(Create(path).get());
    const std::ptrdiff_t descriptors = OpenDescriptors();
    const std::int64_t objects = cf::Object::LiveCount();
    for (const auto& row : kFaults) {
      bool happened = true;
      for (std::int64_t number = 1; happened; ++number) {
        SCOPED_TRACE(sample.kind + ": call " + std::to_string(number) + " " + row.name);
        const Created created = CreateWith(path, row.fault, number, &happened);
        EXPECT_EQ(created.status, created.faces > 0 ? QM_STATUS_OK : QM_STATUS_FAILED);
        if (row.is_harmless || !happened) {
          EXPECT_EQ(created.everything, right);
        }
        EXPECT_EQ(OpenDescriptors(), descriptors);
        EXPECT_EQ(cf::Object::LiveCount(), objects);
        if (row.fault == FileFault::kShrinks) {
          ASSERT_TRUE(WriteSample(folder.path(), sample));
        }
        EXPECT_EQ(EverythingOf(Create(path).get()), right);
        if (HasFailure()) return;
        ASSERT_LT(number, 10'000);
      }
    }
  }
}

// A knowledge table is whole or empty, and holds nothing open.
TEST(FileFailure, LeavesNoTableInPart) {
  const TableBundle bundle;
  const auto write = [&bundle] {
    bundle.Write(
        "FoundryNameTable.plist",
        "<array><dict><key>FoundryName</key><string>URW</string><key>Pattern</key><string>urw</string></dict>"
        "</array>");
    bundle.Write("DefaultClassifications.plist",
                 "<dict><key>Mappings</key><dict><key>garamond</key><string>Serif</string></dict></dict>");
    bundle.Write("KeywordTable.plist", KeywordList("1 Bold B", "Bold w 1"));
  };
  const auto load_all = [] {
    std::string loaded;
    OmString name = "--";
    CFoundryNameTable().ContainsKnownFoundryName("urw", &name);
    loaded += name.str() + CClassificationMappings().GetClassNameFromFontFamily("Garamond").str();
    OmFontStyleScan::OSLoadStyleResources();  // keeps what it has when it finds nothing
    SStyleComponent component;
    return loaded + (OmFontStyleScan::MatchStyleComponent("B", component) ? component.display : "");
  };
  write();
  ASSERT_EQ(load_all(), "URWSerifD1");
  const std::ptrdiff_t descriptors = OpenDescriptors();
  const std::int64_t objects = cf::Object::LiveCount();
  int damaged = 0;
  for (const auto& row : kFaults) {
    bool happened = true;
    for (std::int64_t number = 1; happened; ++number) {
      SCOPED_TRACE("call " + std::to_string(number) + " " + row.name);
      std::string loaded;
      testing::internal::CaptureStdout();  // messages of files that cannot be read
      {
        const FailingFile failure(row.fault, number);
        loaded = load_all();
        happened = failure.happened();
      }
      testing::internal::GetCapturedStdout();
      damaged += loaded != "URWSerifD1";
      EXPECT_TRUE(loaded == "URWSerifD1" || loaded == "--SerifD1" || loaded == "URW--D1" ||
                  loaded == "----D1")
          << loaded;
      EXPECT_EQ(OpenDescriptors(), descriptors);
      EXPECT_EQ(cf::Object::LiveCount(), objects);
      write();
      EXPECT_EQ(load_all(), "URWSerifD1");
      ASSERT_FALSE(HasFailure());
    }
  }
  EXPECT_GT(damaged, 20);
}

}  // namespace
}  // namespace quillmark
