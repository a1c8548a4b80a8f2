// Every allocation and every call that reads a file fails, comes short, or finds the file shrunk, once:
// std::bad_alloc reaches the caller, or the call answers its status, or it tells what it could read. Nothing
// stays behind, and the next call gives what it always gave.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <iterator>
#include <new>
#include <string>
#include <utility>

#include "builders/exported_calls.h"
#include "builders/temp_folder.h"
#include "hostile/failing_calls.h"
#include "hostile/sample_files.h"
#include "knowledge/small_tables.h"
#include "platform/core_foundation/cf_object.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr struct FaultRow {
  Fault fault;
  const char* name;
  bool may_lose;  // else what comes late is asked for again, and what finds no memory throws
} kFaults[] = {
    {Fault::kNoMemory, "finds no memory", false},
    {Fault::kFails, "fails", true},
    {Fault::kAllFail, "and all after it fail", true},
    {Fault::kInterrupted, "is interrupted", false},
    {Fault::kShort, "comes short", false},
    {Fault::kEnds, "ends", true},
    {Fault::kShrinks, "shrinks the file", true},
};

// Platform objects, blocks of memory, open descriptors.
std::array<std::int64_t, 3> Held() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {cf::Object::LiveCount(), LiveBlocks(), std::distance(begin(descriptors), end(descriptors))};
}

// How many calls of `use` there are that can meet the fault. `mend` undoes what faults do to files.
std::int64_t FailEachCall(const std::string& name, const FaultRow& row,
                          const std::function<std::string()>& use, const std::function<void()>& mend) {
  const std::string right = use();
  for (std::int64_t number = 1;; ++number) {
    SCOPED_TRACE(name + ": call " + std::to_string(number) + " " + row.name);
    auto held = Held();
    bool is_right = false;
    bool happened = false;
    {
      const FailingCall failure(row.fault, number);
      try {
        const std::string result = use();
        const bool is_told = result.find("none") != std::string::npos;  // a status, and no array
        is_right = result == right || is_told;
      } catch (const std::bad_alloc&) {
        is_right = row.fault == Fault::kNoMemory;
      }
      happened = failure.happened();
    }
    EXPECT_EQ(Held(), held);
    EXPECT_TRUE(is_right || (happened && row.may_lose)) << "a wrong result without a word";
    mend();
    EXPECT_EQ(use(), right);
    if (testing::Test::HasFailure() || !happened) return number - 1;
  }
}

// What each table tells, when it is there.
using Told = std::array<std::string, 3>;
const Told kWhole = {"URW", "Serif", "BoldItalic"};
const Told kEmpty = {"--", "--", ""};

Told AskTables(const QM_FontArray* array) {
  char foundry[16] = "";
  char family[16] = "";
  char styles[2][16] = {"", ""};
  char* names[] = {styles[0], styles[1]};
  std::uint32_t count = 0;
  QM_GetFoundryName(array, 0, foundry, sizeof(foundry));
  QM_GetClassificationFromFamily("Garamond", nullptr, family, sizeof(family));
  QM_GetStyles("Foo-Bold Italic", "", 2, sizeof(styles[0]), &count, names);
  return {foundry, family, std::string(styles[0]) + styles[1]};
}

bool IsWholeOrEmpty(const Told& told) {
  return std::equal(told.begin(), told.end(), kWhole.begin(), [](const auto& text, const auto& whole) {
    return text == whole || text == kEmpty[static_cast<std::size_t>(&whole - kWhole.data())];
  });
}

// The first use of the tables in a process, in which one call meets the fault, and the use after it: whether
// all calls are done, every table was loaded in the end, or some stayed empty; or one was there in part, or a
// file stayed open.
enum Uses { kNoFault, kLoaded, kSomeEmpty, kWrong };

Uses UseTwice(Fault fault, std::int64_t number, const QM_FontArray* array) {
  const pid_t child = ::fork();
  if (child == 0) {
    const auto held = Held();
    Told first = kWhole;
    bool happened = false;
    {
      const FailingCall failure(fault, number);
      try {
        first = AskTables(array);
      } catch (const std::bad_alloc&) {
      }
      happened = failure.happened();
    }
    const Told then = AskTables(array);
    const bool is_right = IsWholeOrEmpty(first) && IsWholeOrEmpty(then) && Held()[2] == held[2];
    ::_exit(!is_right ? kWrong : !happened ? kNoFault : then == kWhole ? kLoaded : kSomeEmpty);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return kWrong;
  return static_cast<Uses>(WEXITSTATUS(status));
}

// A table is loaded anew by the next use when its load threw. A load that found no file, or could not hold
// it, leaves the table empty for good, as a missing file does; it is never there in part.
// Before the tests that load the tables in this process.
TEST(Failure, LeavesNoTableLoadedInPart) {
  const TableBundle bundle;
  QM_FontArray* array = nullptr;
  QM_CreateSpecifierFromXML("<FontData><Foundry>Copyright URW</Foundry></FontData>", &array);
  const OwnedArray owned(array);
  for (const FaultRow& row : kFaults) {
    int count[4] = {};
    for (std::int64_t number = 1; count[kNoFault] + count[kWrong] == 0; ++number) {
      bundle.Write("FoundryNameTable.plist",
                   "<array><dict><key>FoundryName</key><string>One</string><key>Pattern</key>"
                   "<string>first</string></dict><dict><key>FoundryName</key><string>URW</string>"
                   "<key>Pattern</key><string>urw</string></dict></array>");
      bundle.Write("DefaultClassifications.plist",
                   "<dict><key>Default Classifications</key><array><string>None</string></array>"
                   "<key>Mappings</key><dict><key>garamond</key><string>Serif</string></dict></dict>");
      bundle.Write("KeywordTable.plist", KeywordList("1 Bold B,2 Italic", "Bold w 1,Italic o 2"));
      ++count[UseTwice(row.fault, number, array)];
    }
    SCOPED_TRACE(row.name);
    EXPECT_EQ(count[kWrong], 0);
    EXPECT_GT(count[kLoaded], row.fault == Fault::kNoMemory ? 60 + 2 * count[kSomeEmpty] : -1);
    EXPECT_GT(count[kSomeEmpty], row.fault == Fault::kFails ? 5 : -1);
  }
}

// Creation, every query, both stored forms written and read back.
TEST(Failure, LeavesCreationQueriesAndStoredFormsWhole) {
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    const TempFolder folder;
    if (!WriteSample(folder.path(), sample)) continue;  // no extended attributes
    const auto use = [&] {
      const OwnedArray array = Create(folder.Path(sample.font));
      std::string all = EverythingOf(array.get());
      if (array == nullptr || sample.kind != "suitcase") return all;
      for (const auto& [write, read] :
           {std::pair(&QM_GetXMLRepresentation, &QM_CreateSpecifierFromXML),
            {&QM_GetPropertyListRepresentation, &QM_CreateSpecifierFromPropertyList}}) {
        QM_FontArray* again = nullptr;
        read(Stored(write, array.get()).c_str(), &again);
        const OwnedArray owned(again);
        all += EverythingOf(again);
      }
      for (const std::string& text : AskTables(array.get())) all += text;
      return all;
    };
    for (const FaultRow& row : kFaults) {
      const auto mend = [&] { ASSERT_TRUE(WriteSample(folder.path(), sample)); };
      EXPECT_GT(FailEachCall(sample.kind, row, use, mend), 3);
      if (HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace quillmark
