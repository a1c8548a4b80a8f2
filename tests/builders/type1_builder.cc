#include "builders/type1_builder.h"

#include <stdexcept>

#include "platform/byte_reader.h"

namespace quillmark {
namespace {

constexpr char kText = 1;
constexpr char kBinary = 2;
constexpr char kEndOfFile = 5;

void AddSegments(std::vector<std::string>& segments, char type, std::string_view data) {
  constexpr std::size_t kMostData = 2046;
  for (std::size_t start = 0; start < data.size(); start += kMostData) {
    segments.push_back(std::string{type, '\0'}.append(data.substr(start, kMostData)));
  }
}

}  // namespace

std::vector<std::string> PostSegments(std::string_view type1_program) {
  constexpr std::string_view kLastClearWord = "eexec";
  const std::size_t word = type1_program.find(kLastClearWord);
  const std::size_t zeros = type1_program.rfind(std::string(64, '0'));
  if (word == std::string_view::npos || zeros == std::string_view::npos) {
    throw std::invalid_argument("no Type 1 font program");
  }
  const std::size_t binary = word + kLastClearWord.size() + 1;
  const std::size_t trailer = type1_program.find_last_not_of('0', zeros) + 1;
  std::vector<std::string> segments;
  AddSegments(segments, kText, type1_program.substr(0, binary));
  AddSegments(segments, kBinary, type1_program.substr(binary, trailer - binary));
  AddSegments(segments, kText, type1_program.substr(trailer));
  segments.push_back({kEndOfFile, '\0'});
  return segments;
}

void AddPostResources(ResourceForkBuilder& fork, const std::vector<std::string>& segments) {
  std::int16_t id = 501;
  for (const std::string& segment : segments) fork.Add(FourCharCode("POST"), id++, segment);
}

}  // namespace quillmark
