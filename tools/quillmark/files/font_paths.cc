#include "files/font_paths.h"

#include <exception>
#include <filesystem>
#include <utility>

#include "files/interrupt.h"
#include "files/standard_input.h"
#include "text/printable.h"

namespace quillmark::tool {

namespace fs = std::filesystem;

std::string FontPath::Shown() const { return standard_input_name ? kStandardInputName : ShownPath(path); }

FontPaths::FontPaths(const PathSources& sources)
    : paths_(sources.paths), standard_input_name_(sources.standard_input_name), walk_options_(sources.walk) {
  if (sources.list.empty()) return;
  list_.emplace(sources.list, sources.list_is_nul_separated ? '\0' : '\n', [this] { return Stopped(); });
}

bool FontPaths::Stopped() const { return stopped_ || Interrupted() != 0; }

std::optional<FontPath> FontPaths::Next() {
  if (ended_) return std::nullopt;
  std::optional<FontPath> found = Found();
  if (!found) {
    ended_ = true;
    cut_short_ = Interrupted() != 0;
  }
  return found;
}

std::optional<FontPath> FontPaths::Found() {
  while (!Stopped()) {
    if (walk_) {
      if (std::optional<FontPath> found = Walked()) return found;
      walk_.reset();
      continue;
    }
    std::optional<FontPath> named = Named();
    std::error_code ignored;
    if (!named || !named->fault.empty() || named->standard_input_name ||
        !fs::is_directory(named->path, ignored)) {
      return named;
    }
    walk_.emplace(named->path, walk_options_, [this] { return Stopped(); });
  }
  return std::nullopt;
}

std::optional<FontPath> FontPaths::Walked() {
  if (next_name_ == walked_.names.size()) {
    auto folder = walk_->NextFolder();
    if (!folder) return std::nullopt;
    walked_ = *std::move(folder);
    next_name_ = 0;
    if (!walked_.fault.empty()) return FontPath{walked_.path, false, walked_.fault};
  }
  const WalkedFolder::Name& name = walked_.names[next_name_++];
  return FontPath{walked_.PathOf(name), false, {}, name.is_sidecar, std::nullopt, walked_.carriers};
}

std::optional<FontPath> FontPaths::Named() {
  if (next_ < paths_.size()) {
    FontPath named{paths_[next_++], true, {}};
    if (named.path == kStandardInputPath) named.standard_input_name = standard_input_name_;
    return named;
  }
  if (!list_) return std::nullopt;
  if (std::optional<std::string> path = list_->Next()) return FontPath{std::move(*path), true, {}};
  FontPath list{list_->name(), true, list_->fault()};
  list_.reset();
  if (list.fault.empty()) return std::nullopt;
  return list;
}

PathCount::PathCount(const PathSources& sources, bool is_shown) {
  if (!is_shown) return;
  std::error_code ignored;
  const bool is_read_once = sources.list == kStandardInputPath || !fs::is_regular_file(sources.list, ignored);
  if (!sources.list.empty() && is_read_once) return;
  try {
    thread_ = std::jthread([this, sources](const std::stop_token& stop) {
      try {
        Count(sources, stop);
      } catch (const std::exception&) {
        // The walk that identifies the files meets the same fault and reports it.
      }
    });
  } catch (const std::exception&) {
    // No thread or no memory to spare: the total stays unknown.
  }
}

void PathCount::Count(const PathSources& sources, const std::stop_token& stop) {
  FontPaths paths(sources);
  const std::stop_callback on_stop(stop, [&] { paths.Stop(); });
  while (paths.Next()) ++counted_;
  complete_ = !stop.stop_requested() && !paths.cut_short();
}

std::optional<std::size_t> PathCount::total() const {
  return complete_ ? std::optional<std::size_t>(counted_) : std::nullopt;
}

}  // namespace quillmark::tool
