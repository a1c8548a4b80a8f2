// Every allocation of every call fails once: std::bad_alloc reaches the caller or the call answers its
// status, nothing stays behind, and the next call gives what it always gave.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "builders/exported_calls.h"
#include "builders/temp_folder.h"
#include "hostile/failing_allocations.h"
#include "hostile/sample_files.h"
#include "knowledge/small_tables.h"
#include "platform/core_foundation/cf_object.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

// A call into the library, and afterwards what it gave, which is also given back.
struct Call {
  std::string name;
  std::function<std::int32_t()> run;
  std::function<std::string()> take;
};

// Fails each allocation of the call in turn; how many there are.
std::int64_t FailEachAllocation(const Call& call) {
  const std::int32_t right_status = call.run();
  const std::string right = call.take();
  for (std::int64_t number = 1;; ++number) {
    SCOPED_TRACE(call.name + ", allocation " + std::to_string(number));
    const std::int64_t blocks = LiveBlocks();
    const std::int64_t objects = cf::Object::LiveCount();
    bool is_thrown = false;
    bool happened = false;
    std::int32_t status = 0;
    {
      const FailingAllocation failure(number);
      try {
        status = call.run();
      } catch (const std::bad_alloc&) {
        is_thrown = true;
      }
      happened = failure.happened();
    }
    const bool is_right = call.take() == right;
    EXPECT_EQ(LiveBlocks(), blocks);
    EXPECT_EQ(cf::Object::LiveCount(), objects);
    EXPECT_TRUE(is_thrown || status != QM_STATUS_OK || is_right) << "a wrong result without a word";
    EXPECT_EQ(call.run(), right_status);
    EXPECT_EQ(call.take(), right);
    if (testing::Test::HasFailure() || !happened) return number - 1;
  }
}

Call CreationCall(const std::string& name, std::function<std::int32_t(QM_FontArray**)> create) {
  const auto array = std::make_shared<QM_FontArray*>(nullptr);
  return {name, [create, array] { return create(array.get()); },
          [array] {
            const std::string all = EverythingOf(*array);
            if (*array != nullptr) QM_SpecifierFree(*array);
            *array = nullptr;
            return all;
          }};
}

// A call that fills a buffer that is large enough.
Call TextCall(const std::string& name, std::function<std::int32_t(std::vector<char>&)> fill) {
  const auto buffer = std::make_shared<std::vector<char>>(64 * 1024);
  return {name, [fill, buffer] { return fill(*buffer); },
          [buffer] {
            std::string text = buffer->data();
            std::fill(buffer->begin(), buffer->end(), '\0');
            return text;
          }};
}

class AllocationFailure : public testing::Test {
 protected:
  // A font of the kind in a folder of its own; empty where the file system cannot hold it.
  std::string PathOf(const Sample& sample) {
    folders_.push_back(std::make_unique<TempFolder>());
    return WriteSample(folders_.back()->path(), sample) ? folders_.back()->Path(sample.font) : "";
  }

 private:
  std::vector<std::unique_ptr<TempFolder>> folders_;
};

// The first use of a table in a process, in which one allocation fails, and the use after it.
enum class AfterFailure { kRight, kEmpty, kWrong, kNoFailure };

AfterFailure UseTwice(std::int64_t number, const std::function<std::string()>& use, const std::string& right,
                      const std::string& empty) {
  const pid_t child = ::fork();
  if (child == 0) {
    bool happened = false;
    {
      const FailingAllocation failure(number);
      try {
        use();
      } catch (const std::bad_alloc&) {
      }
      happened = failure.happened();
    }
    const std::string then = use();
    const AfterFailure after = !happened       ? AfterFailure::kNoFailure
                               : then == right ? AfterFailure::kRight
                               : then == empty ? AfterFailure::kEmpty
                                               : AfterFailure::kWrong;
    ::_exit(static_cast<int>(after));
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return AfterFailure::kWrong;
  return static_cast<AfterFailure>(WEXITSTATUS(status));
}

// A table is loaded anew by the next use when its load threw. A load that found no file, or could not hold
// it, leaves the table empty for good, as a missing file does; it is never there in part.
// Before the tests that load the tables in this process.
TEST_F(AllocationFailure, LeavesNoTableLoadedInPart) {
  const TableBundle bundle;
  bundle.Write(
      "FoundryNameTable.plist",
      "<array><dict><key>FoundryName</key><string>One</string><key>Pattern</key><string>first</string></dict>"
      "<dict><key>FoundryName</key><string>URW</string><key>Pattern</key><string>urw</string></dict></"
      "array>");
  bundle.Write("DefaultClassifications.plist",
               "<dict><key>Default Classifications</key><array><string>None</string></array>"
               "<key>Mappings</key><dict><key>garamond</key><string>Serif</string></dict></dict>");
  bundle.Write("KeywordTable.plist", KeywordList("1 Bold B,2 Italic", "Bold w 1,Italic o 2"));
  QM_FontArray* array = nullptr;
  const std::string face = "<FontData><Foundry>Copyright URW</Foundry></FontData>";
  ASSERT_EQ(QM_CreateSpecifierFromXML(face.c_str(), &array), QM_STATUS_OK);
  const struct {
    const char* name;
    std::function<std::string()> use;
    const char* right;
    const char* empty;
  } rows[] = {
      {"foundries",
       [array] {
         char buffer[64] = "";
         QM_GetFoundryName(array, 0, buffer, sizeof(buffer));
         return std::string(buffer);
       },
       "URW", "--"},
      {"classifications",
       [] {
         char buffer[64] = "";
         QM_GetClassificationFromFamily("Garamond", nullptr, buffer, sizeof(buffer));
         return std::string(buffer);
       },
       "Serif", "--"},
      {"keywords",
       [] {
         char first[64] = "";
         char second[64] = "";
         char* names[] = {first, second};
         std::uint32_t count = 0;
         QM_GetStyles("Foo-Bold Italic", "", 2, sizeof(first), &count, names);
         return std::string(first) + second;
       },
       "BoldItalic", ""},
  };
  for (const auto& row : rows) {
    int right = 0;
    int empty = 0;
    for (std::int64_t number = 1;; ++number) {
      const AfterFailure after = UseTwice(number, row.use, row.right, row.empty);
      ASSERT_NE(after, AfterFailure::kWrong) << row.name << ", allocation " << number;
      if (after == AfterFailure::kNoFailure) break;
      (after == AfterFailure::kRight ? right : empty) += 1;
    }
    EXPECT_GT(right, 20) << row.name;
    EXPECT_LT(empty, right / 2) << row.name;
    RecordProperty(row.name, std::to_string(right) + " loaded anew, " + std::to_string(empty) + " empty");
  }
  QM_SpecifierFree(array);
}

TEST_F(AllocationFailure, LeavesCreationWhole) {
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    const std::string path = PathOf(sample);
    if (path.empty()) continue;
    const auto create = CreationCall(sample.kind, [&path](QM_FontArray** array) {
      return QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, array);
    });
    EXPECT_GT(FailEachAllocation(create), 10) << sample.kind;
    if (HasFailure()) return;
  }
}

TEST_F(AllocationFailure, LeavesQueriesAndStoredFormsWhole) {
  const SampleOutlines outlines = SmallOutlines();
  for (const Sample& sample : SamplesOf(outlines)) {
    if (sample.kind != "dfont" && sample.kind != "suitcase") continue;
    const OwnedArray array = Create(PathOf(sample));
    ASSERT_TRUE(array);
    for (const auto write : kStoredForms) {
      FailEachAllocation(TextCall("a stored form written", [&](std::vector<char>& buffer) {
        auto length = static_cast<std::uint32_t>(buffer.size());
        return write(array.get(), buffer.data(), &length);
      }));
    }
    const std::string xml = Stored(QM_GetXMLRepresentation, array.get());
    FailEachAllocation(CreationCall(
        "XML read", [&](QM_FontArray** again) { return QM_CreateSpecifierFromXML(xml.c_str(), again); }));
    const std::string list = Stored(QM_GetPropertyListRepresentation, array.get());
    FailEachAllocation(CreationCall("a property list read", [&](QM_FontArray** again) {
      return QM_CreateSpecifierFromPropertyList(list.c_str(), again);
    }));
    for (const auto get : kTextGetters) {
      FailEachAllocation(TextCall("a getter", [&](std::vector<char>& buffer) {
        return get(array.get(), 0, buffer.data(), static_cast<std::int32_t>(buffer.size()));
      }));
    }
  }
  FailEachAllocation(TextCall("a classification", [](std::vector<char>& buffer) {
    return QM_GetClassificationFromFamily("Nobody's", "Garamond", buffer.data(), 64);
  }));
  FailEachAllocation(TextCall("styles", [](std::vector<char>& buffer) {
    char* names[] = {buffer.data()};
    std::uint32_t count = 0;
    return QM_GetStyles("Foo-BoldItalic", "Foo Bold", 1, 64, &count, names);
  }));
  FailEachAllocation(TextCall("a name table", [&](std::vector<char>& buffer) {
    char* fond = nullptr;
    QM_GetPostScriptNameFromNamesTable(outlines.regular.data(),
                                       static_cast<std::uint32_t>(outlines.regular.size()), &fond, &fond, 0,
                                       buffer.data(), 64);
    return 0;
  }));
}

}  // namespace
}  // namespace quillmark
