// Many threads at once, from the first call of the process on, get what one thread gets. The thread sanitizer
// watches in the tsan preset.
#include <gtest/gtest.h>

#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "builders/exported_calls.h"
#include "builders/temp_folder.h"
#include "hostile/sample_files.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr int kThreads = 8;

// Runs the work in all threads, which begin together, and compares with what it gives afterwards in this one.
template <typename Work>
void ExpectSameFromAllThreads(Work work) {
  std::vector<std::string> results(kThreads);
  {
    std::latch start(kThreads);
    std::vector<std::jthread> threads;
    for (std::string& result : results) {
      threads.emplace_back([&start, &result, &work] {
        start.arrive_and_wait();
        result = work();
      });
    }
  }
  EXPECT_EQ(results, std::vector<std::string>(kThreads, work()));
}

// Each function that loads a table, in the first calls of the process.
std::string NamesWithoutAnArray() {
  char style[64] = "";
  char* styles[] = {style};
  std::uint32_t count = 0;
  QM_GetStyles("Foo-BoldItalic", "Foo Bold", 1, sizeof(style), &count, styles);
  char family[64] = "";
  QM_GetClassificationFromFamily("Nobody's", "Garamond", family, sizeof(family));
  return std::to_string(count) + style + family;
}

std::string CreatedAndReadBack(const std::string& path) {
  const OwnedArray array = Create(path);
  if (!array) return "no face";
  QM_FontArray* xml = nullptr;
  QM_CreateSpecifierFromXML(Stored(QM_GetXMLRepresentation, array.get()).c_str(), &xml);
  QM_FontArray* list = nullptr;
  QM_CreateSpecifierFromPropertyList(Stored(QM_GetPropertyListRepresentation, array.get()).c_str(), &list);
  return EverythingOf(array.get()) + EverythingOf(OwnedArray(xml).get()) +
         EverythingOf(OwnedArray(list).get());
}

TEST(Threads, AskCreateStoreAndReadBackAtOnce) {
  ExpectSameFromAllThreads(NamesWithoutAnArray);
  EXPECT_EQ(NamesWithoutAnArray().substr(0, 5), "1Bold") << "the tables were not found";
  for (const Sample& sample : SamplesOf(SmallOutlines())) {
    const TempFolder folder;
    if (!WriteSample(folder.path(), sample)) continue;
    const std::string path = folder.Path(sample.font);
    ExpectSameFromAllThreads([&path] { return CreatedAndReadBack(path); });
    const OwnedArray array = Create(path);
    ExpectSameFromAllThreads([&array] { return EverythingOf(array.get()); });
  }
}

}  // namespace
}  // namespace quillmark
