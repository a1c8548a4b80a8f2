// The input as an sfnt font: through each table reader in memory and in a file, and through the collector.
// All must agree.
#include <cstdlib>
#include <string>

#include "analysis/face_collector.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "scratch_file.h"

namespace quillmark {
namespace {

struct Answers {
  bool named = false;
  OmString platform = "mac";
  OmString foundry, family, version, post_script, display, full, windows_full;
  std::uint32_t kerning = 0;

  FaceOutputs Outputs() {
    return {nullptr,
            nullptr,
            &platform,
            {&foundry, &family, &version, &post_script, &display, &full, &windows_full},
            &kerning};
  }
  std::string Line() const {
    std::string line = std::to_string(named) + "|" + std::to_string(kerning);
    for (const OmString* text :
         {&platform, &foundry, &family, &version, &post_script, &display, &full, &windows_full}) {
      line += "|" + text->str();
    }
    return line;
  }
};

Answers Read(const SfntData& font) {
  Answers answers;
  const FaceOutputs outputs = answers.Outputs();
  answers.named = getMetaDataFromNamesTable(font, outputs.names);
  if (answers.named) static_cast<void>(GetPlatformTTF(font, outputs.platform));
  static_cast<void>(GetTrueTypeKerningTableChecksum(font, outputs.kerning_checksum));
  return answers;
}

void Check(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("ttf");
  scratch.Fill(data, size);
  const auto file = RegularFile::Open(scratch.path());
  if (!file) std::abort();
  Answers in_memory = Read(SfntData(Bytes(data, size)));
  const Answers in_file = Read(SfntData(*file, static_cast<std::uint32_t>(size)));
  if (in_memory.Line() != in_file.Line()) std::abort();

  Answers collected;
  collected.named = CollectMetaData(nullptr, scratch.path(), nullptr, 0, collected.Outputs()) == kCollected;
  const std::string family = in_memory.family.str();
  in_memory.family = family.substr(0, family.find_last_not_of(' ') + 1);
  if (collected.Line() != in_memory.Line()) std::abort();
}

}  // namespace
}  // namespace quillmark

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillmark::Check(data, size);
  return 0;
}
