// quillmark split: the fonts of a collection or of a resource file, each written to a file of its own.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "analysis/collection.h"
#include "analysis/name_table.h"
#include "collection_faults.h"
#include "commands.h"
#include "new_file.h"
#include "reason.h"
#include "resource_faults.h"
#include "sfnt_faults.h"
#include "split_names.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

// A small file can list millions of faces, each nearly as large as itself.
constexpr std::uint32_t kMostFaces = 4096;
constexpr ResType kSfnt = FourCharCode("sfnt");

struct Options {
  std::string file;
  std::string folder = ".";
};

// Where the fonts of one file come from.
class FontSource {
 public:
  virtual ~FontSource() = default;
  // Which fonts there are to be written: face or resource numbers.
  virtual std::vector<int> Numbers() = 0;
  // "face 3", "sfnt 128".
  virtual std::string Name(int number) const = 0;
  // The whole font; none when it cannot be had, and why.
  virtual std::vector<char> Font(int number, std::string& reason) = 0;
};

class CollectionSource : public FontSource {
 public:
  explicit CollectionSource(std::string path) : path_(std::move(path)), collection_(path_) {}

  std::string WhyNone() { return WhyNoList(path_, collection_); }
  std::uint32_t FaceCount() const { return collection_.faceCount(); }

  // Faces that share a list of tables are one font.
  std::vector<int> Numbers() override {
    std::vector<int> numbers;
    std::set<std::uint32_t> offsets;
    for (std::uint32_t face = 0; face < collection_.faceCount(); ++face) {
      const auto offset = collection_.directoryOffset(face);
      if (!offset || offsets.insert(*offset).second) numbers.push_back(static_cast<int>(face));
    }
    return numbers;
  }

  std::string Name(int number) const override { return "face " + std::to_string(number); }

  std::vector<char> Font(int number, std::string& reason) override {
    std::vector<char> font;
    const auto face = static_cast<std::uint32_t>(number);
    if (collection_.GetDataPtrForFace(face, font) != kCollectionOk)
      reason = CutFault(path_, collection_, face);
    return font;
  }

 private:
  const std::string path_;
  TrueTypeCollectionFont collection_;
};

class ResourceSource : public FontSource {
 public:
  explicit ResourceSource(QuillmarkResourceFile& file) : file_(file) {}

  std::vector<int> Numbers() override {
    const std::vector<std::int16_t> ids = file_.getSortedResIDsForType(kSfnt);
    return {ids.begin(), ids.end()};
  }

  std::string Name(int number) const override { return "sfnt " + std::to_string(number); }

  std::vector<char> Font(int number, std::string& reason) override {
    const ResourceHandle resource(file_.getResourceHandleForType(kSfnt, number));
    const std::string_view bytes = AsText(HandleBytes(resource.get()));
    if (bytes.empty()) reason = "its data are empty or lie outside the file";
    const auto kind = SfntKind(AsBytes(bytes));
    if (reason.empty() && (!kind || StartsWith(AsBytes(bytes), "typ1"))) {
      reason = "neither a TrueType nor an OpenType font";
    }
    return {bytes.begin(), bytes.end()};
  }

 private:
  QuillmarkResourceFile& file_;
};

Bytes BytesOf(const std::vector<char>& font) { return AsBytes(std::string_view(font.data(), font.size())); }

struct Target {
  int number;
  std::string path;
};

class Splitter {
 public:
  Splitter(const Options& options, FontSource& source) : options_(options), source_(source) {}

  int Run() {
    const std::vector<Target> targets = ChooseTargets();
    const bool any_exists = std::any_of(targets.begin(), targets.end(), [&](const Target& target) {
      std::error_code error;
      const bool exists = fs::exists(fs::symlink_status(target.path, error));
      if (exists) Complain(target.path, "exists already; nothing was written");
      return exists;
    });
    if (any_exists) return 1;
    for (const Target& target : targets) {
      if (!Write(target)) return 1;
    }
    return complete_ ? 0 : 1;
  }

 private:
  void Complain(const std::string& what, const std::string& reason) {
    std::cerr << ShownPath(what) << ": " << reason << '\n';
    complete_ = false;
  }

  // Every font is looked at before the first is written, so that a target that exists stops all.
  std::vector<Target> ChooseTargets() {
    std::vector<Target> targets;
    SplitNames names;
    for (const int number : source_.Numbers()) {
      if (auto target = ChooseTarget(number, names)) targets.push_back(*std::move(target));
    }
    return targets;
  }

  std::optional<Target> ChooseTarget(int number, SplitNames& names) {
    std::string reason;
    const std::vector<char> font = source_.Font(number, reason);
    std::string name = source_.Name(number);
    if (!reason.empty()) {
      Complain(options_.file, name + " cannot be written: " + reason);
      return std::nullopt;
    }
    std::string post_script_name;
    getPostScriptNameFromNamesTable(SfntData(BytesOf(font)), post_script_name);
    std::replace(name.begin(), name.end(), ' ', '-');
    const std::string extension = StartsWith(BytesOf(font), "OTTO") ? ".otf" : ".ttf";
    const std::string file_name = names.NameFor(post_script_name, name, extension);
    return Target{number, (fs::path(options_.folder) / file_name).native()};
  }

  bool Write(const Target& target) {
    std::string reason;
    const std::vector<char> font = source_.Font(target.number, reason);
    if (reason.empty()) reason = WriteNewFile(target.path, BytesOf(font)).value_or("");
    if (reason.empty()) {
      std::cout << ShownPath(target.path) << '\n';
    } else {
      Complain(target.path, "cannot be written: " + reason);
    }
    return reason.empty();
  }

  const Options& options_;
  FontSource& source_;
  bool complete_ = true;
};

int Fail(const std::string& path, const std::string& reason) {
  std::cerr << ShownPath(path) << ": " << reason << '\n';
  return 1;
}

int SplitCollection(const Options& options) {
  CollectionSource source(options.file);
  if (const std::string reason = source.WhyNone(); !reason.empty()) return Fail(options.file, reason);
  if (source.FaceCount() > kMostFaces) {
    return Fail(options.file, "lists more than " + std::to_string(kMostFaces) + " faces");
  }
  return Splitter(options, source).Run();
}

int SplitResources(const Options& options) {
  const ResourceFileHolder file = OpenResources(options.file);
  if (file.get() == nullptr) {
    return Fail(options.file, "neither a collection nor a resource file, so there is nothing to split");
  }
  if (file.get()->countResType(kSfnt) == 0) {
    return Fail(options.file, "its resources hold no TrueType or OpenType font");
  }
  ResourceSource source(*file.get());
  return Splitter(options, source).Run();
}

int Split(const Options& options) {
  if (const auto reason = WhyNotReadable(options.file)) return Fail(options.file, *reason);
  std::error_code error;
  if (!fs::is_directory(options.folder, error)) return Fail(options.folder, "not a folder to write to");
  return IsCollection(options.file) ? SplitCollection(options) : SplitResources(options);
}

}  // namespace

void AddSplit(CLI::App& app, int& status) {
  const auto options = std::make_shared<Options>();
  CLI::App* command =
      app.add_subcommand("split", "Write each font of a collection or resource file to a file of its own");
  command->add_option("collection", options->file, "Collection (.ttc), .dfont or font suitcase")->required();
  command->add_option("-o,--output", options->folder, "Folder to write to, which must be there")
      ->capture_default_str();
  command->callback([&status, options] { status = Split(*options); });
}

}  // namespace quillmark::tool
