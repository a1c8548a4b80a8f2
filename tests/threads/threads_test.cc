// Many threads at once, from the first call of the process on, get what one thread gets.
// ctest runs each test in a process of its own, in which no table is loaded yet; the thread sanitizer watches
// in the tsan preset.
#include <gtest/gtest.h>

#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "builders/temp_folder.h"
#include "hostile/everything_of.h"
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
  const std::string alone = work();
  for (const std::string& result : results) EXPECT_EQ(result, alone);
}

// Everything of the array, which is freed.
std::string TakeAll(QM_FontArray* array) {
  std::string all = EverythingOf(array);
  if (array != nullptr) QM_SpecifierFree(array);
  return all;
}

std::string CreatedAndReadBack(const std::string& path) {
  QM_FontArray* array = nullptr;
  if (QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) return "no face";
  std::string all = EverythingOf(array);
  std::string text(64 * 1024, '\0');
  auto length = static_cast<std::uint32_t>(text.size());
  QM_FontArray* again = nullptr;
  if (QM_GetXMLRepresentation(array, text.data(), &length) == QM_STATUS_OK)
    QM_CreateSpecifierFromXML(text.c_str(), &again);
  all += TakeAll(again);
  again = nullptr;
  length = static_cast<std::uint32_t>(text.size());
  if (QM_GetPropertyListRepresentation(array, text.data(), &length) == QM_STATUS_OK) {
    QM_CreateSpecifierFromPropertyList(text.c_str(), &again);
  }
  QM_SpecifierFree(array);
  return all + TakeAll(again);
}

std::string NamesWithoutAnArray() {
  char style[64] = "";
  char* styles[] = {style};
  std::uint32_t count = 0;
  QM_GetStyles("Foo-BoldItalic", "Foo Bold", 1, sizeof(style), &count, styles);
  char family[64] = "";
  QM_GetClassificationFromFamily("Nobody's", "Garamond", family, sizeof(family));
  return std::to_string(count) + style + family;
}

class Threads : public testing::Test {
 protected:
  Threads() {
    for (const Sample& sample : SamplesOf(SmallOutlines())) {
      folders_.push_back(std::make_unique<TempFolder>());
      if (WriteSample(folders_.back()->path(), sample)) paths_.push_back(folders_.back()->Path(sample.font));
    }
  }
  std::vector<std::string> paths_;

 private:
  std::vector<std::unique_ptr<TempFolder>> folders_;
};

TEST_F(Threads, CreateQueryStoreAndReadBackAtOnce) {
  ExpectSameFromAllThreads([this] {
    std::string all = NamesWithoutAnArray();
    for (const std::string& path : paths_) all += CreatedAndReadBack(path);
    return all;
  });
}

TEST_F(Threads, LoadEachTableOnce) {
  ExpectSameFromAllThreads(NamesWithoutAnArray);
  EXPECT_EQ(NamesWithoutAnArray().substr(0, 5), "1Bold") << "the tables were not found";
}

TEST_F(Threads, AskOneArray) {
  for (const std::string& path : paths_) {
    QM_FontArray* array = nullptr;
    if (QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) continue;
    ExpectSameFromAllThreads([array] { return EverythingOf(array); });
    QM_SpecifierFree(array);
  }
}

}  // namespace
}  // namespace quillmark
