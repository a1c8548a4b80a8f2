#include "inputs.h"

#include <algorithm>
#include <stdexcept>

#include "builders/collection_builder.h"
#include "builders/temp_folder.h"
#include "builders/type1_builder.h"
#include "platform/byte_reader.h"
#include "quillmark/quillmark.h"

namespace quillmark {
namespace {

constexpr std::size_t kMostBytes = 400 * 1000;  // of one part, so that thousands of mutations take a minute
constexpr char kOpenType[] = "/usr/share/fonts/opentype/urw-base35/";
constexpr char kTrueType[] = "/usr/share/fonts/truetype/";

// The faces of a real collection with their small tables alone, names above all.
std::string SmallTablesOf(const std::string& collection) {
  constexpr std::uint32_t kSmall = 4096;
  const Bytes bytes = AsBytes(collection);
  CollectionBuilder builder;
  const std::uint32_t faces = U32At(bytes, 8).value_or(0);
  for (std::uint32_t face = 0; face < faces; ++face) {
    const std::size_t directory = U32At(bytes, 12 + 4 * face).value();
    SfntBuilder font;
    for (std::size_t entry = directory + 12;
         entry < directory + 12 + 16 * U16At(bytes, directory + 4).value(); entry += 16) {
      const std::uint32_t length = U32At(bytes, entry + 12).value();
      const auto table = Slice(bytes, U32At(bytes, entry + 8).value(), std::min(length, kSmall));
      font.Table(std::string(AsText(Slice(bytes, entry, 4).value())), std::string(AsText(table.value())));
    }
    builder.Face(font);
  }
  return builder.Trailer(std::string(16 * 1024, '\0')).Build();
}

std::string PostFork(const std::string& type1_program) {
  ResourceForkBuilder fork;
  AddPostResources(fork, PostSegments(type1_program));
  return fork.Build();
}

SampleOutlines RealOutlines() {
  const std::string truetype = kTrueType;
  const std::string type1 = ReadFile("/usr/share/fonts/type1/urw-base35/StandardSymbolsPS.t1");
  return {.regular = ReadFile(truetype + "dejavu/DejaVuSansMono.ttf"),
          .bold = ReadFile(std::string(kOpenType) + "StandardSymbolsPS.otf"),
          .cff = ReadFile(std::string(kOpenType) + "D050000L.otf"),
          .collection = SmallTablesOf(ReadFile(truetype + "wqy/wqy-zenhei.ttc")),
          .type1 = type1,
          .post = PostFork(type1)};
}

Examined ExamineFont(const std::string& folder, const Sample& sample) {
  return ExamineFontFile(folder + "/" + sample.font);
}
Examined ExamineStoredXml(const std::string&, const Sample& sample) {
  return ExamineXml(sample.parts[0].bytes);
}
Examined ExamineStoredList(const std::string&, const Sample& sample) {
  return ExaminePropertyList(sample.parts[0].bytes);
}
Examined ExamineKnowledge(const std::string&, const Sample& sample) { return ExamineTable(sample.font); }

// A stored form of the faces of one sample.
std::string Stored(std::int32_t (*writer)(const QM_FontArray*, char*, std::uint32_t*), const Sample& sample) {
  const TempFolder folder;
  QM_FontArray* array = nullptr;
  if (!WriteSample(folder.path(), sample) ||
      QM_CreateSpecifier(folder.Path(sample.font).c_str(), 0, QM_ATTRIBUTES_ALL, &array) != QM_STATUS_OK) {
    throw std::runtime_error("no faces in the sample " + sample.kind);
  }
  std::uint32_t length = 0;
  char nothing = 0;
  writer(array, &nothing, &length);
  std::string text(length, '\0');
  writer(array, text.data(), &length);
  QM_SpecifierFree(array);
  text.pop_back();
  return text;
}

// The beginning of a shipped table up to the end of an element, closed again.
std::string BeginningOf(const std::string& list, const std::string& element_end, const std::string& closing) {
  constexpr std::size_t kLength = 4000;
  return list.substr(0, list.rfind(element_end, kLength) + element_end.size()) + closing;
}

}  // namespace

std::vector<InputKind> AllKinds() {
  std::vector<InputKind> kinds;
  const auto add = [&kinds](const Sample& sample, bool is_text, auto examine) {
    const bool fits = std::ranges::all_of(
        sample.parts, [](const SamplePart& part) { return part.bytes.size() <= kMostBytes; });
    if (!fits) return;
    auto kind = std::ranges::find(kinds, sample.kind, &InputKind::name);
    if (kind == kinds.end()) kind = kinds.insert(kind, InputKind{sample.kind, is_text, {}, examine});
    Input input{sample, {}};
    for (const SamplePart& part : sample.parts) {
      input.fields.push_back(is_text ? std::vector<FontField>() : FontFieldsOf(part.bytes));
    }
    kind->inputs.push_back(std::move(input));
  };
  for (const SampleOutlines& outlines : {SmallOutlines(), RealOutlines()}) {
    for (const Sample& sample : SamplesOf(outlines)) {
      add(sample, false, &ExamineFont);
      if (sample.kind != "collection" && sample.kind != "dfont") continue;
      add({"xml", "", {{"xml", Stored(QM_GetXMLRepresentation, sample)}}}, true, &ExamineStoredXml);
      add({"list", "", {{"list", Stored(QM_GetPropertyListRepresentation, sample)}}}, true,
          &ExamineStoredList);
    }
  }
  const auto add_table = [&add](const char* kind, const std::string& file, const std::string& list) {
    add({kind, file, {{"Resources/" + file, list}}}, true, &ExamineKnowledge);
  };
  const std::string foundries = ReadFile(QM_DATA_FOLDER "/FoundryNameTable.plist");
  add_table("foundries", "FoundryNameTable.plist",
            BeginningOf(foundries, "\n\t</dict>\n", "</array></plist>\n"));
  add_table("foundries", "FoundryNameTable.plist", foundries);
  const std::string classes = ReadFile(QM_DATA_FOLDER "/DefaultClassifications.plist");
  add_table("classifications", "DefaultClassifications.plist",
            BeginningOf(classes, "</string>\n", "</dict></dict></plist>\n"));
  add_table("keywords", "KeywordTable.plist", ReadFile(QM_DATA_FOLDER "/KeywordTable.plist"));
  return kinds;
}

Sample Mutated(const InputKind& kind, Dice& dice) {
  // Small inputs first and foremost: damage to them hits something.
  const std::size_t chosen = dice.OneIn(4) ? dice.Below(kind.inputs.size()) : 0;
  const Input& input = kind.inputs[chosen];
  Sample sample = input.sample;
  const auto damage = [&](std::size_t part) {
    if (kind.is_text) {
      MutateText(sample.parts[part].bytes, dice);
    } else {
      MutateFont(sample.parts[part].bytes, input.fields[part], dice);
    }
  };
  if (dice.OneIn(8)) {
    for (std::size_t part = 0; part < sample.parts.size(); ++part) damage(part);
  } else {
    std::size_t part = dice.Below(sample.parts.size());
    while (sample.parts[part].bytes.empty()) part = (part + 1) % sample.parts.size();
    damage(part);
  }
  return sample;
}

}  // namespace quillmark
