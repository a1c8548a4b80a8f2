// quillmark split: the fonts of a collection or of a resource file, each written to a file of its own.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/collection.h"
#include "analysis/name_table.h"
#include "commands/commands.h"
#include "output/output.h"
#include "reasons/fault_words.h"
#include "reasons/known_formats.h"
#include "reasons/opened_font.h"
#include "reasons/reason.h"
#include "reasons/watched_files.h"
#include "resources/resource_access.h"
#include "split/new_file.h"
#include "split/split_names.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

// A small file can list millions of faces, each nearly as large as itself, or hold thousands of tiny
// outlines.
constexpr std::uint32_t kMostFonts = 4096;

constexpr std::uint64_t kGiB = std::uint64_t{1} << 30;

struct Options {
  std::string file;
  std::string folder = ".";
  std::uint64_t max_bytes = kGiB;
};

Bytes BytesOf(const std::vector<char>& font) { return AsBytes(std::string_view(font.data(), font.size())); }

// Identifies where a font lies: a number, and bytes of the source, which must outlive it.
using Place = std::pair<std::uint64_t, std::string_view>;
constexpr std::uint64_t kNowhere = std::numeric_limits<std::uint64_t>::max();

// The fonts that one file holds: the faces of a collection, or the outlines of a resource file.
struct FontSource {
  std::string kind;          // what its fonts are called: "face", "sfnt"
  std::vector<int> numbers;  // of faces or resources, ascending
  // Fonts of one place have the same bytes, or cannot be extracted for the same reason.
  std::function<Place(int number)> place_of;
  // The whole font; empty, with the reason, when it cannot be extracted.
  std::function<std::vector<char>(int number, std::string& reason)> font;
};

FontSource SourceOf(const TrueTypeCollectionFont& collection) {
  FontSource source{"face", std::vector<int>(collection.listedFaceCount()), {}, {}};
  std::iota(source.numbers.begin(), source.numbers.end(), 0);
  // The same list of tables makes the same font, wherever the list lies.
  source.place_of = [&](int number) -> Place {
    const auto face = static_cast<std::uint32_t>(number);
    if (const auto found = collection.FindFace(face)) return {kNowhere, AsText(found->directory)};
    return {collection.directoryOffset(face).value_or(kNowhere), {}};
  };
  source.font = [&](int number, std::string& reason) {
    std::vector<char> font;
    const auto face = static_cast<std::uint32_t>(number);
    CollectionFault fault;
    if (!collection.FindFace(face, &fault)) reason = Words(fault);
    if (collection.GetDataPtrForFace(face, font) != kCollectionOk && reason.empty()) {
      reason = "there is too little memory for it";
    }
    return font;
  };
  return source;
}

FontSource SourceOf(ResourceMap& map) {
  std::set<int> ids;
  for (std::size_t i = 0; i < map.CountResources(kSfnt); ++i) ids.insert(map.ID(*map.At(kSfnt, i)));
  const auto data_of = [&map](int number) {
    const auto key = map.Find(kSfnt, static_cast<std::int16_t>(number));
    return key ? map.Data(*key) : std::nullopt;
  };
  FontSource source{"sfnt", {ids.begin(), ids.end()}, {}, {}};
  source.place_of = [data_of](int number) -> Place {
    const auto data = data_of(number);
    return {data ? data->start : kNowhere, {}};
  };
  source.font = [&map, data_of](int number, std::string& reason) {
    std::vector<char> font;
    const auto data = data_of(number);
    const auto append = [&font](Bytes piece) {
      font.insert(font.end(), AsText(piece).begin(), AsText(piece).end());
      return true;
    };
    if (!data || data->length == 0) {
      reason = "its data are empty or lie outside the file";
    } else if (!map.fork().Copy(data->start, data->length, append)) {
      reason = "its data cannot be read";
    } else if (const auto kind = SfntKind(BytesOf(font)); !kind || StartsWith(BytesOf(font), "typ1")) {
      reason = "neither a TrueType nor an OpenType font";
    }
    return font;
  };
  return source;
}

// One output file: fonts of the same bytes, or fonts that cannot be extracted for the same reason.
struct Target {
  std::vector<int> numbers;
  std::string reason;  // why they cannot be extracted; empty when they can
  std::string path;    // of the file to be written
};

// "face 3", "faces 0, 2 to 5".
std::string NamesOf(const std::string& kind, const std::vector<int>& numbers) {
  std::string text = kind + (numbers.size() == 1 ? " " : "s ");
  for (std::size_t i = 0, last = 0; i < numbers.size(); i = ++last) {
    for (last = i; last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1;) ++last;
    text += (i == 0 ? "" : ", ") + std::to_string(numbers[i]);
    if (last > i) text += (last > i + 1 ? " to " : ", ") + std::to_string(numbers[last]);
  }
  return text;
}

class Splitter {
 public:
  Splitter(const Options& options, const FontSource& source, const WatchedFiles& files, FontFile& file)
      : options_(options), source_(source), files_(files), file_(file) {}

  int Run() {
    if (const std::string reason = ChooseTargets(); !reason.empty()) {
      Complain(options_.file, reason + "; nothing was written");
      return 1;
    }
    std::erase_if(targets_, [&](const Target& target) {
      if (target.reason.empty()) return false;
      Complain(options_.file, NamesOf(source_.kind, target.numbers) + " cannot be written: " + target.reason);
      return true;
    });
    const bool any_exists = std::any_of(targets_.begin(), targets_.end(), [&](const Target& target) {
      std::error_code error;
      const bool exists = fs::exists(fs::symlink_status(target.path, error));
      if (exists) Complain(target.path, "exists already; nothing was written");
      return exists;
    });
    if (any_exists || !MakeFolder()) return 1;
    const bool are_written =
        std::all_of(targets_.begin(), targets_.end(), [&](const Target& target) { return Write(target); });
    return are_written && complete_ ? 0 : 1;
  }

 private:
  void Complain(const std::string& what, const std::string& reason) {
    ReportFault(what, reason);
    complete_ = false;
  }

  // Every font is looked at before the first is written, so that an existing target file stops the command.
  // Returns an error when there are too many bytes to write, or to read: thousands of fonts in a small
  // hostile file can overlap and have the same bytes.
  std::string ChooseTargets() {
    // Read, found to be equal to others, and not written.
    const std::uint64_t most_repeated_bytes = std::max(file_.TotalLength(), options_.max_bytes);
    std::map<Place, std::size_t> targets;  // indexes of targets_
    for (const int number : source_.numbers) {
      const auto [known, is_new] = targets.try_emplace(source_.place_of(number), targets_.size());
      if (is_new) {
        std::string reason;
        const std::vector<char> font = source_.font(number, reason);
        if (files_.failure()) return files_.WhyUnread(options_.file);
        Charge(file_.budget(), font.size());
        read_ += font.size();
        known->second = TargetOf(number, font, reason);
        if (to_write_ > options_.max_bytes) {
          return "its fonts take more than the " + std::to_string(options_.max_bytes) +
                 (options_.max_bytes == 1 ? " byte" : " bytes") + " that --max-bytes allows";
        }
        if (read_ - to_write_ > most_repeated_bytes)
          return "its fonts overlap, as only those of damaged files do";
      }
      targets_[known->second].numbers.push_back(number);
    }
    return {};
  }

  // The index of the target of the same bytes or of a new one.
  std::size_t TargetOf(int number, const std::vector<char>& font, const std::string& reason) {
    if (!reason.empty()) {
      targets_.push_back({{}, reason, {}});
      return targets_.size() - 1;
    }
    const std::size_t hash = std::hash<std::string_view>()(AsText(BytesOf(font)));
    const auto [same, is_new] = by_content_.try_emplace({font.size(), hash}, targets_.size());
    if (!is_new) {
      std::string ignored;
      if (source_.font(targets_[same->second].numbers.front(), ignored) == font) return same->second;
    }
    to_write_ += font.size();
    targets_.push_back({{}, {}, PathFor(number, BytesOf(font))});
    return targets_.size() - 1;
  }

  std::string PathFor(int number, Bytes font) {
    const std::string post_script_name = getPostScriptNameFromNamesTable(SfntData(font, file_.budget()));
    const std::string extension = StartsWith(font, "OTTO") ? ".otf" : ".ttf";
    const std::string name =
        names_.NameFor(post_script_name, source_.kind + '-' + std::to_string(number), extension);
    return (fs::path(options_.folder) / name).native();
  }

  bool MakeFolder() {
    std::error_code error;
    if (!targets_.empty()) fs::create_directories(options_.folder, error);
    if (error) Complain(options_.folder, "the folder cannot be made: " + error.message());
    return !error;
  }

  bool Write(const Target& target) {
    std::string reason;
    const std::vector<char> font = source_.font(target.numbers.front(), reason);
    if (reason.empty()) reason = WriteNewFile(target.path, BytesOf(font)).value_or("");
    if (!reason.empty()) {
      Complain(target.path, "cannot be written: " + reason);
      return false;
    }
    std::cout << Printable(target.path) << '\n';
    if (target.numbers.size() > 1) {
      ReportFault(target.path, NamesOf(source_.kind, target.numbers) + " are the same bytes, written once");
    }
    return true;
  }

  const Options& options_;
  const FontSource& source_;
  const WatchedFiles& files_;
  FontFile& file_;
  SplitNames names_;
  std::vector<Target> targets_;
  std::map<std::pair<std::size_t, std::size_t>, std::size_t> by_content_;  // by size and hash
  std::uint64_t read_ = 0, to_write_ = 0;                                  // bytes of fonts
  bool complete_ = true;
};

bool BeginsAsCollection(FontFile& file) {
  const auto& data = file.Data();
  std::array<std::uint8_t, 4> tag = {};
  return data && data->ReadAt(0, tag) == tag.size() && StartsWith(tag, "ttcf");
}

int SplitCollection(const Options& options, const WatchedFiles& files, FontFile& file) {
  const TrueTypeCollectionFont collection(file);
  if (files.failure()) return ReportFault(options.file, files.WhyUnread(options.file));
  if (collection.faceCount() == 0) return ReportFault(options.file, Words(collection.status()));
  if (collection.faceCount() > kMostFonts) {
    return ReportFault(options.file, "lists more than " + std::to_string(kMostFonts) + " faces");
  }
  return Splitter(options, SourceOf(collection), files, file).Run();
}

// That of the resource fork; where there is none, that of the data fork.
std::optional<ResourceMap> MapOf(FontFile& file) {
  if (const auto& resources = file.ResourceFork()) {
    if (auto map = ResourceMap::Open(resources->fork, file.budget())) return map;
  }
  const auto data = file.DataFork();
  return data ? ResourceMap::Open(*data, file.budget()) : std::nullopt;
}

int SplitResources(const Options& options, const WatchedFiles& files, FontFile& file) {
  std::optional<ResourceMap> map = MapOf(file);
  if (files.failure()) return ReportFault(options.file, files.WhyUnread(options.file));
  if (!map) {
    return ReportFault(options.file,
                       "neither a collection nor a resource file, so there is nothing to split");
  }
  if (map->CountResources(kSfnt) == 0) {
    return ReportFault(options.file, "its resources hold no TrueType or OpenType font");
  }
  const FontSource source = SourceOf(*map);
  if (source.numbers.size() > kMostFonts) {
    return ReportFault(options.file, "holds more than " + std::to_string(kMostFonts) + " outlines");
  }
  return Splitter(options, source, files, file).Run();
}

int Split(const Options& options) {
  if (const auto reason = WhyNotReadable(options.file)) return ReportFault(options.file, *reason);
  std::error_code error;
  if (fs::exists(options.folder, error) && !fs::is_directory(options.folder, error)) {
    return ReportFault(options.folder, "not a folder to write to");
  }
  const WatchedFiles files;
  OpenedFont opened(options.file, files);
  try {
    return BeginsAsCollection(opened.file) ? SplitCollection(options, files, opened.file)
                                           : SplitResources(options, files, opened.file);
  } catch (const BudgetSpent&) {
    return ReportFault(options.file, TooMuchWork(opened.budget.most_work()));
  }
}

// Converts a number with or without K, M, G and so on to bytes. The parser's own conversion would wrap
// negative ones.
std::string Size(std::string& text) {
  const std::string given = text;
  try {
    if (!given.starts_with('-')) return CLI::AsSizeValue(false)(text);
  } catch (const CLI::ValidationError&) {
  }
  return "no size \"" + Printable(given) + "\"; it takes bytes, or as 500M or 2G";
}

}  // namespace

void AddSplit(CLI::App& app, int& status) {
  const auto options = std::make_shared<Options>();
  CLI::App* command =
      app.add_subcommand("split", "Write each font of a collection or resource file to a file of its own");
  command->add_option("COLLECTION", options->file, "Collection (.ttc), .dfont or font suitcase")->required();
  command->add_option("-o,--output", options->folder, "Folder to write to, made when it is missing")
      ->capture_default_str();
  command->add_option("--max-bytes", options->max_bytes, "Most bytes to write in all, as 500M or 2G")
      ->transform(CLI::Validator(Size, ""))
      ->type_name("SIZE")
      ->default_str("1G");
  command->callback([&status, options] { status = Split(*options); });
}

}  // namespace quillmark::tool
