// Damages bytes at random: bits, bytes, numbers, lengths, and the fields that hold a font file together. The
// same dice always do the same damage.
#ifndef QUILLMARK_FUZZ_MUTATE_MUTATIONS_H_
#define QUILLMARK_FUZZ_MUTATE_MUTATIONS_H_

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "font_fields.h"

namespace quillmark {

// Gives the same numbers with every standard library.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}
  std::size_t Below(std::size_t count) { return count == 0 ? 0 : engine_() % count; }  // 0 for none
  std::uint32_t U32() { return static_cast<std::uint32_t>(engine_() >> 32); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }

 private:
  std::mt19937_64 engine_;
};

// Up to four kinds of damage on top of each other. `fields` are those of the sound bytes; a few of them may
// lie beside their mark once the bytes have moved.
void MutateFont(std::string& bytes, const std::vector<FontField>& fields, Dice& dice);
// The same for XML: tags, entities and values also go, come twice, and nest.
void MutateText(std::string& text, Dice& dice);

}  // namespace quillmark

#endif
