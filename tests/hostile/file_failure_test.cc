// Every allocation and every call that reads a file fails, comes short, or finds the file shrunk, once:
// std::bad_alloc reaches the caller, or the call answers its status, or it tells what it could read. Nothing
// stays behind, and the next call gives what it always gave.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <iterator>
#include <new>
#include <regex>
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

constexpr auto kFaults = {Fault::kNoMemory, Fault::kFails, Fault::kAllFail, Fault::kInterrupted,
                          Fault::kShort,    Fault::kEnds,  Fault::kShrinks};

// Else what comes late is asked for again, and what finds no memory throws.
bool MayLose(Fault fault) {
  return fault != Fault::kNoMemory && fault != Fault::kInterrupted && fault != Fault::kShort;
}

// Platform objects, blocks of memory, open descriptors.
std::array<std::int64_t, 3> Held() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {cf::Object::LiveCount(), failing::live_blocks, std::distance(begin(descriptors), end(descriptors))};
}

// What each table tells. One that is empty tells none, or nothing.
std::string AskTables(const QM_FontArray* array) {
  char foundry[16] = "";
  char family[16] = "";
  char styles[2][16] = {"", ""};
  char* names[] = {styles[0], styles[1]};
  std::uint32_t count = 0;
  QM_GetFoundryName(array, 0, foundry, sizeof(foundry));
  QM_GetClassificationFromFamily("Garamond", nullptr, family, sizeof(family));
  QM_GetStyles("Foo-Bold Italic", "", 2, sizeof(styles[0]), &count, names);
  return std::string(foundry) + "," + family + "," + styles[0] + styles[1];
}

// The first use of the tables in a process, in which one call meets the fault, and the use after it: whether
// all calls are done, every table was loaded in the end, or some stayed empty; or one was there in part, or a
// file stayed open.
enum Uses { kNoFault, kLoaded, kSomeEmpty, kWrong };

Uses UseTwice(Fault fault, std::int64_t number, const QM_FontArray* array) {
  const pid_t child = ::fork();
  if (child == 0) {
    const auto held = Held();
    const std::string whole = "URW,Serif,BoldItalic";
    std::string first = whole;
    bool happened = false;
    {
      const FailingCall failure(fault, number);
      try {
        first = AskTables(array);
      } catch (const std::bad_alloc&) {
      }
      happened = failure.happened();
    }
    const std::string then = AskTables(array);
    const std::regex whole_or_empty("(URW|--),(Serif|--),(BoldItalic)?");
    const bool is_right = std::regex_match(first, whole_or_empty) && std::regex_match(then, whole_or_empty) &&
                          Held()[2] == held[2];
    ::_exit(!is_right ? kWrong : !happened ? kNoFault : then == whole ? kLoaded : kSomeEmpty);
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
  for (const Fault fault : kFaults) {
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
      ++count[UseTwice(fault, number, array)];
    }
    SCOPED_TRACE(static_cast<int>(fault));
    EXPECT_EQ(count[kWrong], 0);
    EXPECT_GT(count[kLoaded], fault == Fault::kNoMemory ? 60 + 2 * count[kSomeEmpty] : -1);
    EXPECT_GT(count[kSomeEmpty], fault == Fault::kFails ? 5 : -1);
  }
}

// Creation, every query, both stored forms written and read back.
std::string UseOf(const std::string& path) {
  const OwnedArray array = Create(path);
  std::string all = EverythingOf(array.get());
  if (array == nullptr || !path.ends_with("Suitcase")) return all;
  for (const auto& [write, read] :
       {std::pair(&QM_GetXMLRepresentation, &QM_CreateSpecifierFromXML),
        {&QM_GetPropertyListRepresentation, &QM_CreateSpecifierFromPropertyList}}) {
    QM_FontArray* again = nullptr;
    read(Stored(write, array.get()).c_str(), &again);
    all += EverythingOf(OwnedArray(again).get());
  }
  return all + AskTables(array.get());
}

// Whether there was a call of that number to meet the fault.
bool FailsCall(std::int64_t number, Fault fault, const std::string& path, const std::string& right) {
  const auto held = Held();
  bool is_right = false;
  bool happened = false;
  {
    const FailingCall failure(fault, number);
    try {
      const std::string result = UseOf(path);
      is_right = result == right || result.find("none") != std::string::npos;  // a status, and no array
    } catch (const std::bad_alloc&) {
      is_right = fault == Fault::kNoMemory;
    }
    happened = failure.happened();
  }
  EXPECT_EQ(Held(), held);
  EXPECT_TRUE(is_right || (happened && MayLose(fault))) << "a wrong result without a word";
  return happened;
}

TEST(Failure, LeavesCreationQueriesAndStoredFormsWhole) {
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    const TempFolder folder;
    if (!WriteSample(folder.path(), sample)) continue;  // no extended attributes
    const std::string path = folder.Path(sample.font);
    const std::string right = UseOf(path);
    for (const Fault fault : kFaults) {
      std::int64_t calls = 0;
      SCOPED_TRACE(sample.kind + ", fault " + std::to_string(static_cast<int>(fault)));
      while (FailsCall(calls + 1, fault, path, right)) {
        ++calls;
        ASSERT_TRUE(WriteSample(folder.path(), sample));  // mends what the fault did to files
        ASSERT_EQ(UseOf(path), right) << "after call " << calls;
        ASSERT_FALSE(HasFailure()) << "call " << calls;
      }
      EXPECT_GT(calls, 3);
    }
  }
}

}  // namespace
}  // namespace quillmark
