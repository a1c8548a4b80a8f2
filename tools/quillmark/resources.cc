// quillmark resources: the resource map of a font file, and what each of its FONDs says.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "face.h"
#include "platform/cf_ref.h"
#include "platform/forks.h"
#include "platform/text_encoding.h"
#include "printable.h"
#include "reason.h"
#include "resources/fond_record.h"
#include "resources/quillmark_resource_file.h"
#include "resources/resource_access.h"
#include "table.h"
#include "terminal.h"
#include "type_text.h"

namespace quillmark::tool {
namespace {

std::string NameText(const unsigned char* name) {
  return MacRomanToUtf8(std::string(name + 1, name + 1 + name[0]));
}

// A small file can list thousands of types that share one list: what goes beyond any real font file is only
// counted.
constexpr std::size_t kMostRows = 20000;

std::vector<std::string> ResourceRow(QuillmarkResourceFile& file, ResType type, int index) {
  const ResourceHandle resource(file.getResourceHandleViaGet1IndResource(type, index));
  if (resource.get() == nullptr) return {TypeText(type), "", "data outside the file", ""};
  ResID id = 0;
  Str255 name = {};
  GetResInfo(resource.get(), &id, nullptr, name);
  return {TypeText(type), std::to_string(id), std::to_string(GetHandleSize(resource.get())), NameText(name)};
}

void ListResources(QuillmarkResourceFile& file) {
  std::vector<std::vector<std::string>> rows;
  std::size_t left_out = 0;
  const int types = file.count1ResTypes();
  for (int t = 1; t <= types; ++t) {
    ResType type = 0;
    file.getResourceTypeViaGet1IndType(&type, t);
    const int count = std::max(file.countResType(type), 0);
    const int shown =
        static_cast<int>(std::min<std::size_t>(static_cast<std::size_t>(count), kMostRows - rows.size()));
    for (int i = 1; i <= shown; ++i) rows.push_back(ResourceRow(file, type, i));
    left_out += static_cast<std::size_t>(count - shown);
  }
  WriteTable(std::cout, {{"TYPE"}, {"ID"}, {"SIZE"}, {"NAME"}}, rows, OutputLook());
  if (left_out > 0) std::cout << "and " << left_out << " more\n";
}

// Which resource serves which size: "outline 128", "9 pt 129".
std::string Associations(const FondStyles& styles, std::int16_t style) {
  std::string text;
  for (const FondEntry& entry : styles.Of(static_cast<std::uint16_t>(style))) {
    text += text.empty() ? "" : ", ";
    text +=
        (entry.size == 0 ? "outline" : std::to_string(entry.size) + " pt") + " " + std::to_string(entry.id);
  }
  return text;
}

// The printer font file of a style that has no outline in the file, and whether it is there.
std::string PrinterFont(QuillmarkResourceFile& file, Handle fond, std::int16_t style) {
  if (!file.shouldHavePrinterFile(fond, style)) return {};
  const std::string name = file.getPSPrinterNameForFOND(fond, style);
  if (name.empty()) return {};
  return Adopt(CreatePrinterPath(&file, fond, style)) ? name : name + " (missing)";
}

void DescribeFond(QuillmarkResourceFile& file, Handle fond) {
  ResID id = 0;
  Str255 raw_name = {};
  GetResInfo(fond, &id, nullptr, raw_name);
  std::cout << "\nFOND " << id << ' '
            << Printable(file.getResourceNameFromFOND(fond).value_or(NameText(raw_name))) << '\n';

  const FondStyles styles(HandleBytes(fond));
  std::vector<std::vector<std::string>> rows;
  for (const std::int16_t style : styles.codes()) {
    rows.push_back({std::to_string(style), Associations(styles, style),
                    file.getPostScriptNameForFOND(fond, style), PrinterFont(file, fond, style)});
  }
  WriteTable(std::cout, {{"STYLE"}, {"ASSOCIATIONS"}, {"POSTSCRIPT NAME"}, {"PRINTER FONT"}}, rows,
             OutputLook());
}

int Resources(const std::string& path) {
  const CFRef<CFStringRef> name =
      Adopt(CFStringCreateWithCString(nullptr, path.c_str(), kCFStringEncodingUTF8));
  const ResourceFileHolder file(name ? AllocateResourceFile(name.get(), true) : nullptr);
  if (file.get() == nullptr) {
    std::cerr << ShownPath(path) << ": "
              << (IsRegularFile(path) ? "no resource map in either fork" : ExplainNoFace(path).reason)
              << '\n';
    return 1;
  }
  ListResources(*file.get());
  for (const std::int16_t id : file.get()->getSortedResIDsForType(FourCharCode("FOND"))) {
    const ResourceHandle fond(file.get()->getResourceHandleForType(FourCharCode("FOND"), id));
    if (fond.get() != nullptr) DescribeFond(*file.get(), fond.get());
  }
  return 0;
}

}  // namespace

void AddResources(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("resources", "Print the resource map of a font file and its FONDs");
  const auto file = std::make_shared<std::string>();
  command->add_option("file", *file, "Font file with a resource fork, or data-fork font file")->required();
  command->callback([&status, file] { status = Resources(*file); });
}

}  // namespace quillmark::tool
