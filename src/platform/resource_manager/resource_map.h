// A resource map: the types, resources, names and data that one fork holds, and writing it back without
// resources that were removed. Layout: "Inside Macintosh: More Macintosh Toolbox", Resource Manager.
// Opening checks the header, the type list and the bounds of every reference list; references, names and data
// are read on request, because a map of half a megabyte may list 65,535 types that share one list of
// 65,535 resources. Positions in lists count from 0. Use from one thread at a time. Tests:
// tests/platform/resource_manager_test.cc; fuzz/resource_map_fuzzer.cc.
#ifndef QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_MAP_H_
#define QUILLMARK_PLATFORM_RESOURCE_MANAGER_RESOURCE_MAP_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/byte_reader.h"
#include "platform/files/forks.h"

namespace quillmark {

// Why a fork is no resource map.
struct MapFault {
  enum Kind {
    kCutHeader,            // the fork ends inside its header
    kDataPastEnd,          // the data area runs to byte `end`, and the fork has `size`
    kMapPastEnd,           // the map runs to byte `end`, and the fork has `size`
    kShortMap,             // the map has fewer bytes than its own header
    kUnreadable,           // the map could not be read
    kTypeListPastEnd,      // the type list runs to byte `end` of the map, which has `size`
    kReferenceListPastEnd  // the same of the list of the resources of `type`
  };
  Kind kind = kCutHeader;
  std::uint64_t end = 0;
  std::uint64_t size = 0;
  std::uint32_t type = 0;
};

class ResourceMap {
 public:
  // One resource, whatever is removed around it: the number of its type's entry in the type list as it was
  // opened, and its position in that entry's reference list as it was opened.
  struct Key {
    std::uint16_t entry = 0;
    std::uint16_t position = 0;
    bool operator==(const Key&) const = default;
  };
  struct DataRange {  // in the fork, without the length word before the data
    std::uint64_t start = 0;
    std::uint32_t length = 0;
  };
  static constexpr std::uint8_t kProtected = 0x08;       // attribute of a resource: cannot be removed
  static constexpr std::uint16_t kMapReadOnly = 0x0080;  // attribute of a map: never written

  // Nothing when the map is not well-formed: header, data area and map lie inside the fork, the type list and
  // every reference list that is not empty inside the map. A fork without a map is refused after 16 bytes;
  // `fault` (may be null) receives the reason.
  static std::optional<ResourceMap> Open(Fork fork, Budget* budget = nullptr, MapFault* fault = nullptr);

  // Types, each counted once: of a type that is listed twice, the first entry counts.
  std::size_t CountTypes() const { return listed_.size(); }
  std::optional<std::uint32_t> TypeAt(std::size_t position) const;

  std::size_t CountResources(std::uint32_t type) const;
  std::optional<Key> At(std::uint32_t type, std::size_t position) const;
  // The first resource of that ID.
  std::optional<Key> Find(std::uint32_t type, std::int16_t id);

  // Of a resource that is in the map.
  std::uint32_t Type(Key key) const { return entries_[key.entry].type; }
  std::int16_t ID(Key key) const;
  std::uint8_t Attributes(Key key) const;
  // Raw bytes; nothing when the resource has no name or its name leaves the map.
  std::optional<std::string> Name(Key key) const;
  // Nothing when the data leave the data area.
  std::optional<DataRange> Data(Key key) const;
  const Fork& fork() const { return fork_; }

  std::uint16_t MapAttributes() const;

  // Removes a resource from the map, and its type with the last resource. False, changing nothing, for a
  // protected resource and for one that was removed.
  [[nodiscard]] bool Remove(Key key);
  bool changed() const { return changed_; }

  // Lays out the whole fork anew, with the data that remaining resources use, and hands it over in pieces.
  // False when `sink` returns false, the fork cannot be read, or the lists outgrow the map's 16-bit offsets.
  [[nodiscard]] bool Write(const ByteSink& sink) const;

 private:
  struct Entry {  // of the type list, with what has become of its reference list
    std::uint32_t type = 0;
    std::uint32_t list = 0;   // offset of the reference list in the map
    std::uint32_t count = 0;  // of references as opened
    // Remaining positions, ascending; set once one was removed.
    std::optional<std::vector<std::uint16_t>> left;

    std::size_t CountLeft() const { return left ? left->size() : count; }
    std::uint16_t Left(std::size_t i) const { return left ? (*left)[i] : static_cast<std::uint16_t>(i); }
  };
  using IdPosition = std::pair<std::int16_t, std::uint16_t>;
  using IdIndex = std::vector<IdPosition>;  // sorted: of one ID, the first position leads

  friend class ResourceMapLayout;  // resource_map_write.cc

  ResourceMap(Fork fork, Budget* budget) : fork_(std::move(fork)), budget_(budget) {}
  std::optional<MapFault> ReadHeaderAndMap();
  std::optional<MapFault> ReadTypeList();
  Bytes Reference(Key key) const;
  std::uint32_t DataOffset(Key key) const;  // of the length word, in the data area
  std::uint16_t NameOffset(Key key) const;  // in the name list
  // The length word of the resource's data; nothing when it is outside the data area or cannot be read.
  std::optional<std::uint32_t> StatedLength(Key key) const;
  IdIndex& IndexOf(std::uint16_t entry);

  Fork fork_;
  Budget* budget_;
  std::uint32_t data_start_ = 0;
  std::uint32_t data_length_ = 0;
  std::uint32_t map_start_ = 0;
  std::uint32_t map_length_ = 0;
  std::vector<std::uint8_t> map_;      // the part of the map that offsets can reach
  std::vector<Entry> entries_;         // first entries of their types, in list order
  std::vector<std::uint16_t> listed_;  // entries that are still listed
  std::map<std::uint32_t, std::uint16_t> entry_of_type_;
  std::unordered_map<std::uint16_t, IdIndex> id_indexes_;
  bool changed_ = false;
};

}  // namespace quillmark

#endif
