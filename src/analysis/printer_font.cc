#include "analysis/printer_font.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "analysis/postscript_header.h"
#include "platform/cf_ref.h"
#include "platform/forks.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"

namespace quillmark {
namespace {

constexpr std::int16_t kFirstPostID = 501;
constexpr std::size_t kFullPostSize = 2048;  // a segment that continues in the next one
constexpr std::size_t kDataForkHeaderSize = 6000;

// Every output that gathering reads or writes.
using Texts = std::array<OmString*, 7>;
// What they hold; nothing for one that is not wanted.
using Values = std::array<std::optional<std::string>, 7>;

Texts TextsOf(const FaceOutputs& outputs) {
  const NameOutputs& names = outputs.names;
  return {outputs.kind_name,      names.foundry,      names.family_name, names.version,
          names.post_script_name, names.display_name, names.full_name};
}

Values ValuesOf(const Texts& texts) {
  Values values;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (texts[i]) values[i] = texts[i]->str();
  }
  return values;
}

// Through the platform's UTF-8 string and back: text that is no UTF-8 comes out empty.
void PassThroughPlatformString(OmString* text) {
  if (text == nullptr) return;
  const CFRef<CFStringRef> string =
      Adopt(CFStringCreateWithCString(kCFAllocatorDefault, text->c_str(), kCFStringEncodingUTF8));
  text->Set(string.get());
}

CollectStatus ParsePostResources(const std::string& path, const FaceOutputs& outputs) {
  const ResourceFileHolder file(QuillmarkResourceFile::initWithFile(path, true));
  if (file.get() == nullptr) return kPrinterFontMissing;
  CollectStatus status = kUndecided;
  for (const std::int16_t id : {kFirstPostID, static_cast<std::int16_t>(kFirstPostID + 1)}) {
    const ResourceHandle segment(file.get()->getResourceHandleForType(FourCharCode("POST"), id));
    const std::size_t size = HandleBytes(segment.get()).size();
    if (size == 0 || (size == kFullPostSize && id != kFirstPostID)) break;
    GatherMetaDataFromHandle(segment.get(), outputs);
    for (OmString* text :
         {outputs.names.display_name, outputs.names.full_name, outputs.names.post_script_name}) {
      PassThroughPlatformString(text);
    }
    status = kCollected;
  }
  return status;
}

CollectStatus ParseDataFork(const std::string& path, const FaceOutputs& outputs) {
  const auto file = RegularFile::Open(path);
  if (!file) return kPrinterFontMissing;
  std::array<std::uint8_t, kDataForkHeaderSize> buffer;
  const std::string_view data = AsText(Bytes(buffer).first(file->ReadAt(0, buffer)));
  if (!data.empty()) GatherPostScriptMetaDataFromData(LowerCasedHeader(data), data, outputs);
  return kCollected;
}

thread_local PrinterFontMemory* current_memory = nullptr;

}  // namespace

// What is gathered depends on the file, on which outputs are wanted, and on what they hold before.
struct PrinterFontMemory {
  enum class Source { kPostResources, kDataFork };
  using Question = std::tuple<Source, std::string, Values>;
  using Answer = std::pair<CollectStatus, Values>;

  std::map<Question, Answer> answers;
};

namespace {

using Source = PrinterFontMemory::Source;

CollectStatus Parse(Source source, const std::string& path, const FaceOutputs& outputs) {
  return source == Source::kDataFork ? ParseDataFork(path, outputs) : ParsePostResources(path, outputs);
}

// What Parse gives, by memory where the same was asked before.
CollectStatus ParseOnce(Source source, const std::string& path, const FaceOutputs& outputs) {
  if (current_memory == nullptr) return Parse(source, path, outputs);
  const Texts texts = TextsOf(outputs);
  PrinterFontMemory::Question question(source, path, ValuesOf(texts));
  auto& answers = current_memory->answers;
  const auto known = answers.find(question);
  if (known == answers.end()) {
    const CollectStatus status = Parse(source, path, outputs);
    answers.emplace(std::move(question), std::make_pair(status, ValuesOf(texts)));
    return status;
  }
  const auto& [status, values] = known->second;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (texts[i]) *texts[i] = values[i].value_or("");
  }
  return status;
}

}  // namespace

CollectStatus GatherFromPrinterFont(const std::string& path, const FaceOutputs& outputs) {
  return ParseOnce(Source::kPostResources, path, outputs);
}

CollectStatus GatherFromDataFork(const std::string& path, const FaceOutputs& outputs) {
  return ParseOnce(Source::kDataFork, path, outputs);
}

PrinterFontScope::PrinterFontScope() {
  if (current_memory != nullptr) return;
  memory_ = std::make_unique<PrinterFontMemory>();
  current_memory = memory_.get();
}

PrinterFontScope::~PrinterFontScope() {
  if (memory_) current_memory = nullptr;
}

}  // namespace quillmark
