// What is mutated: for every kind of input the sound files that the damage starts from.
#ifndef QUILLMARK_FUZZ_MUTATE_INPUTS_H_
#define QUILLMARK_FUZZ_MUTATE_INPUTS_H_

#include <string>
#include <vector>

#include "examination.h"
#include "font_fields.h"
#include "hostile/sample_files.h"
#include "mutations.h"

namespace quillmark {

// Several files that lie in one folder, or one text.
struct Input {
  Sample sample;
  std::vector<std::vector<FontField>> fields;  // of each part
};

struct InputKind {
  std::string name;
  bool is_text = false;
  std::vector<Input> inputs;
  // Takes an input that lies in the folder through the library.
  Examined (*examine)(const std::string& folder, const Sample& sample) = nullptr;
};

// With the real fonts of this machine's test packages, as far as they are there and small.
std::vector<InputKind> AllKinds();

// Damages parts of a copy: most often one.
Sample Mutated(const InputKind& kind, Dice& dice);

}  // namespace quillmark

#endif
