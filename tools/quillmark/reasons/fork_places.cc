#include "reasons/fork_places.h"

#include <array>

#include "platform/files/apple_double.h"
#include "platform/resource_manager/resource_map.h"
#include "resources/resource_access.h"
#include "text/printable.h"

namespace quillmark::tool {
namespace {

namespace fs = std::filesystem;

fs::path OutsideForkFolders(const fs::path& folder) {
  fs::path outside;
  for (const fs::path& part : folder) {
    if (part != ".AppleDouble" && part != "__MACOSX") outside /= part;
  }
  return outside;
}

}  // namespace

fs::path OwnerOfSidecar(const fs::path& sidecar) {
  std::string name = sidecar.filename().native();
  if (name.starts_with("._")) name.erase(0, 2);
  const fs::path folder = sidecar.parent_path();
  fs::path owner = OutsideForkFolders(folder) / name;
  std::error_code error;
  if (OutsideForkFolders(folder) != folder || (owner != sidecar && fs::exists(owner, error))) return owner;
  // A relative path may lead through such a folder unseen.
  const fs::path whole = fs::absolute(sidecar, error).lexically_normal().parent_path();
  return OutsideForkFolders(whole) == whole ? owner : OutsideForkFolders(whole) / name;
}

std::string NoForkAnywhere(const std::string& path) {
  const fs::path file(path);
  const fs::path folder = file.parent_path();
  const fs::path name = file.filename();
  const auto shown = [](const fs::path& place) { return Printable(place.native()); };
  const std::string sidecar = "._" + name.native();
  return "empty, and no resource fork was found for it: there is none in " +
         shown(file / "..namedfork/rsrc") + ", " + shown(file / "rsrc") +
         ", the extended attributes user.com.apple.ResourceFork and user.org.netatalk.ResourceFork, " +
         shown(folder / sidecar) + ", " + shown(folder / "__MACOSX" / sidecar) +
         " (nor in the folder __MACOSX beside any folder above), " + shown(folder / ".AppleDouble" / name) +
         " and " + shown(folder / "resource.frk" / name) +
         "; archives and version control lose resource forks, so get the file again from where it is whole";
}

std::optional<std::string> WhySidecar(OpenedFont& font) {
  const auto data = font.file.DataFork();
  std::array<std::uint8_t, 4> magic = {};
  if (!data || data->ReadAt(0, magic) < magic.size() || U32At(magic, 0) != kAppleDoubleMagic) {
    return std::nullopt;
  }
  const std::string owner = OwnerOfSidecar(font.file.path()).native();
  const auto fork = FindAppleDoubleEntry(*data, kAppleDoubleResourceFork);
  if (!fork || fork->length == 0) {
    return "an AppleDouble sidecar of " + Printable(owner) + ", without a resource fork in it";
  }
  const std::string reason = "an AppleDouble sidecar, which keeps the resource fork of another file";
  if (owner == font.file.path())
    return reason + ": give it that file's name with \"._\" before, and place it beside that file";
  if (font.files.Status(owner).regular) return reason + ": give " + Printable(owner) + " instead";
  return reason + ": " + Printable(owner) +
         " is not there; an empty file of that name is enough to have the fork read";
}

// Copying to other disks leaves sidecars with forks that hold no resource.
Explanation ExplainLoneSidecar(OpenedFont& font) {
  const auto data = font.file.DataFork();
  const auto entry = data ? FindAppleDoubleEntry(*data, kAppleDoubleResourceFork) : std::nullopt;
  const auto fork = entry && entry->length > 0 ? data->Part(entry->start, entry->length) : std::nullopt;
  if (!fork) return {};
  const auto map = ResourceMap::Open(*fork, &font.budget);
  if (map && map->CountResources(kFond) + map->CountResources(kSfnt) + map->CountResources(kPost) == 0) {
    return {};
  }
  return {Outcome::kLoneFork, WhySidecar(font).value_or("")};
}

}  // namespace quillmark::tool
