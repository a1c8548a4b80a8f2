// The input as an sfnt font: through each table reader in memory and in a file, and through the collector.
// All must agree.
#include <cstdlib>
#include <string>
#include <utility>
#include <variant>

#include "analysis/face_collector.h"
#include "analysis/name_table.h"
#include "analysis/sfnt_directory.h"
#include "quillmark/quillmark.h"
#include "scratch_file.h"

namespace quillmark {
namespace {

struct Answers {
  bool named = false;
  OmString platform = "mac";
  FaceNames names;

  std::string Line() const {
    std::string line = std::to_string(named);
    for (const OmString* text :
         {&platform, &names.foundry, &names.family, &names.version, &names.post_script_name,
          &names.display_name, &names.full_name, &names.windows_full_name}) {
      line += "|" + text->str();
    }
    return line;
  }
};

Answers Read(const SfntData& font, std::uint32_t& kerning) {
  Answers answers;
  auto names = getMetaDataFromNamesTable(font);
  if (auto* found = std::get_if<FaceNames>(&names)) {
    answers.named = true;
    answers.names = std::move(*found);
    static_cast<void>(GetPlatformTTF(font, &answers.platform));
  }
  static_cast<void>(GetTrueTypeKerningTableChecksum(font, &kerning));
  return answers;
}

void Check(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile scratch("ttf");
  scratch.Fill(data, size);
  FileAccess access;
  FontFile file(access, scratch.path());
  if (!file.Data()) std::abort();
  std::uint32_t kerning[2] = {};
  Answers in_memory = Read(SfntData(Bytes(data, size)), kerning[0]);
  const Answers in_file = Read(SfntData(*file.Data(), static_cast<std::uint32_t>(size)), kerning[1]);
  if (in_memory.Line() != in_file.Line() || kerning[0] != kerning[1]) std::abort();

  CollectedFace face;
  const bool named = CollectMetaData(file, nullptr, QM_ATTRIBUTES_ALL, face) == kCollected;
  const Answers collected{named, face.platform, face.names};
  const std::string family = in_memory.names.family.str();
  in_memory.names.family = family.substr(0, family.find_last_not_of(' ') + 1);
  if (collected.Line() != in_memory.Line()) std::abort();
  if (size > 0 && named == face.fault.has_value())
    std::abort();  // an empty file has no table to find fault with
}

}  // namespace
}  // namespace quillmark

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillmark::Check(data, size);
  return 0;
}
