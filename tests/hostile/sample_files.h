// A font of every kind of file that the library reads, each with everything in it that a reader looks at:
// what tests spoil, starve of memory, and read from many threads at once.
#ifndef QUILLMARK_TESTS_HOSTILE_SAMPLE_FILES_H_
#define QUILLMARK_TESTS_HOSTILE_SAMPLE_FILES_H_

#include <string>
#include <vector>

namespace quillmark {

struct SamplePart {
  std::string name;         // of the file, in the sample's folder
  std::string bytes;        // of the file
  std::string attribute{};  // or, when not empty, of this extended attribute of a part before it
};

struct Sample {
  std::string kind;
  std::string font;               // name of the part that a host asks for
  std::vector<SamplePart> parts;  // in the order in which they are to be written
};

// What samples are made of.
struct SampleOutlines {
  std::string regular;  // TrueType fonts
  std::string bold;
  std::string cff;  // an OpenType font with PostScript outlines
  std::string collection;
  std::string type1;  // a PostScript font program
  std::string post;   // a resource fork with a program's POST resources
};
SampleOutlines SmallOutlines();  // of some hundred bytes each

// The kinds truetype, opentype, collection, dfont, appledouble, attribute, suitcase and post.
std::vector<Sample> SamplesOf(const SampleOutlines& outlines);

// Writes all parts, in place of earlier ones. False when the file system refuses the extended attributes.
[[nodiscard]] bool WriteSample(const std::string& folder, const Sample& sample);

}  // namespace quillmark

#endif
