// Turns a Type 1 font program into the POST resources of a Macintosh printer font file (LWFN): 2 bytes of
// type and at most 2046 of data each, numbered from 501. Source: Adobe technical note 5040, "Supporting
// Downloadable PostScript Language Fonts".
//   AddPostResources(fork, PostSegments(ReadFile("NimbusSans-Regular.t1")));
#ifndef QUILLMARK_TESTS_BUILDERS_TYPE1_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_TYPE1_BUILDER_H_

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "builders/resource_fork_builder.h"

namespace quillmark {

// The segments of a program (clear text, binary eexec part, zeros and cleartomark), and the end mark.
inline std::vector<std::string> PostSegments(std::string_view type1_program) {
  constexpr std::string_view kLastClearWord = "eexec";
  const std::size_t word = type1_program.find(kLastClearWord);
  const std::size_t zeros = type1_program.rfind(std::string(64, '0'));
  if (word == std::string_view::npos || zeros == std::string_view::npos) {
    throw std::invalid_argument("no Type 1 font program");
  }
  const std::size_t binary = word + kLastClearWord.size() + 1;
  const std::size_t trailer = type1_program.find_last_not_of('0', zeros) + 1;
  std::vector<std::string> segments;
  const auto add = [&](char type, std::string_view data) {
    constexpr std::size_t kMostData = 2046;
    for (std::size_t start = 0; start < data.size(); start += kMostData) {
      segments.push_back(std::string{type, '\0'}.append(data.substr(start, kMostData)));
    }
  };
  add(1, type1_program.substr(0, binary));
  add(2, type1_program.substr(binary, trailer - binary));
  add(1, type1_program.substr(trailer));
  segments.push_back({5, '\0'});
  return segments;
}

// Adds them as POST 501, 502, ...
inline void AddPostResources(ResourceForkBuilder& fork, const std::vector<std::string>& segments) {
  std::int16_t id = 501;
  for (const std::string& segment : segments) fork.Add(FourCharCode("POST"), id++, segment);
}

}  // namespace quillmark

#endif
