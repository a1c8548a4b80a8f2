#include "platform/resource_manager/resource_map.h"

#include <algorithm>
#include <array>

#include "platform/resource_manager/resource_map_format.h"

namespace quillmark {

using namespace resource_format;

namespace {

// Lists and names lie at 16-bit offsets from the type list or the name list, themselves at 16-bit offsets,
// and a list has at most 0xFFFF references: a map's bytes beyond these are out of reach.
constexpr std::size_t kReach = 0xFFFF + 0xFFFF + 0xFFFF * kReferenceSize;

std::uint32_t CountFrom(std::uint16_t stored) { return (stored + 1u) & 0xFFFFu; }

}  // namespace

std::optional<ResourceMap> ResourceMap::Open(Fork fork, Budget* budget, MapFault* fault) {
  const WorkScope work(budget, Work::kResourceMap);
  ResourceMap map(std::move(fork), budget);
  auto found = map.ReadHeaderAndMap();
  if (!found) found = map.ReadTypeList();
  if (!found) return map;
  if (fault != nullptr) *fault = *found;
  return std::nullopt;
}

std::optional<MapFault> ResourceMap::ReadHeaderAndMap() {
  std::array<std::uint8_t, kForkHeaderSize> bytes = {};
  if (fork_.ReadAt(0, bytes) != bytes.size()) return MapFault{MapFault::kCutHeader};
  ByteReader header(bytes);
  data_start_ = header.U32().value_or(0);
  map_start_ = header.U32().value_or(0);
  data_length_ = header.U32().value_or(0);
  map_length_ = header.U32().value_or(0);
  if (!fork_.Part(data_start_, data_length_)) {
    return MapFault{MapFault::kDataPastEnd, std::uint64_t{data_start_} + data_length_, fork_.length()};
  }
  if (!fork_.Part(map_start_, map_length_)) {
    return MapFault{MapFault::kMapPastEnd, std::uint64_t{map_start_} + map_length_, fork_.length()};
  }
  if (map_length_ < kMapHeaderSize + kCountSize) return MapFault{MapFault::kShortMap};
  map_.resize(std::min<std::size_t>(map_length_, kReach));
  if (fork_.ReadAt(map_start_, map_) != map_.size()) return MapFault{MapFault::kUnreadable};
  return std::nullopt;
}

std::optional<MapFault> ResourceMap::ReadTypeList() {
  const Bytes map = map_;
  const std::size_t list = U16At(map, kTypeListOffset).value_or(0);
  const auto stored_count = U16At(map, list);
  if (!stored_count) return MapFault{MapFault::kTypeListPastEnd, list + kCountSize, map_length_};
  const std::uint32_t count = CountFrom(*stored_count);
  const auto types = Slice(map, list + kCountSize, count * kTypeSize);
  if (!types) {
    return MapFault{MapFault::kTypeListPastEnd, list + kCountSize + std::uint64_t{count} * kTypeSize,
                    map_length_};
  }

  Charge(budget_, count * (Budget::kRecord + 4 * Budget::kInsertion));
  ByteReader reader(*types);
  while (reader.remaining() >= kTypeSize) {
    Entry entry;
    entry.type = reader.U32().value_or(0);
    entry.count = CountFrom(reader.U16().value_or(0));
    entry.list = static_cast<std::uint32_t>(list + reader.U16().value_or(0));
    if (entry.count > 0 && !Slice(map, entry.list, entry.count * kReferenceSize)) {
      return MapFault{MapFault::kReferenceListPastEnd,
                      entry.list + std::uint64_t{entry.count} * kReferenceSize, map_length_, entry.type};
    }
    const auto number = static_cast<std::uint16_t>(entries_.size());
    if (!entry_of_type_.try_emplace(entry.type, number).second) continue;
    entries_.push_back(std::move(entry));
    listed_.push_back(number);
  }
  return std::nullopt;
}

std::optional<std::uint32_t> ResourceMap::TypeAt(std::size_t position) const {
  if (position >= listed_.size()) return std::nullopt;
  return entries_[listed_[position]].type;
}

std::size_t ResourceMap::CountResources(std::uint32_t type) const {
  const auto found = entry_of_type_.find(type);
  return found == entry_of_type_.end() ? 0 : entries_[found->second].CountLeft();
}

std::optional<ResourceMap::Key> ResourceMap::At(std::uint32_t type, std::size_t position) const {
  if (position >= CountResources(type)) return std::nullopt;
  const std::uint16_t entry = entry_of_type_.at(type);
  return Key{entry, entries_[entry].Left(position)};
}

std::optional<ResourceMap::Key> ResourceMap::Find(std::uint32_t type, std::int16_t id) {
  const auto found = entry_of_type_.find(type);
  if (found == entry_of_type_.end()) return std::nullopt;
  const IdIndex& index = IndexOf(found->second);
  const auto first = std::lower_bound(index.begin(), index.end(), IdPosition{id, 0});
  if (first == index.end() || first->first != id) return std::nullopt;
  return Key{found->second, first->second};
}

// Walks over a suitcase look up thousands of IDs, in a few types by turns, so each list is indexed at its
// first look-up.
ResourceMap::IdIndex& ResourceMap::IndexOf(std::uint16_t entry) {
  const auto found = id_indexes_.find(entry);
  if (found != id_indexes_.end()) return found->second;
  const std::size_t count = entries_[entry].CountLeft();
  Charge(budget_, count * (Budget::kRecord + Budget::kSortedRecord));
  IdIndex index;
  index.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint16_t position = entries_[entry].Left(i);
    index.emplace_back(ID({entry, position}), position);
  }
  std::sort(index.begin(), index.end());
  return id_indexes_.emplace(entry, std::move(index)).first->second;
}

// The bounds of every list were checked when the map was opened, so a reference is always there.
Bytes ResourceMap::Reference(Key key) const {
  return Slice(map_, entries_[key.entry].list + key.position * kReferenceSize, kReferenceSize)
      .value_or(Bytes());
}

std::int16_t ResourceMap::ID(Key key) const { return I16At(Reference(key), 0).value_or(0); }

std::uint16_t ResourceMap::NameOffset(Key key) const { return U16At(Reference(key), 2).value_or(kNoName); }

std::uint8_t ResourceMap::Attributes(Key key) const { return U8At(Reference(key), 4).value_or(0); }

std::uint32_t ResourceMap::DataOffset(Key key) const {
  return U32At(Reference(key), 4).value_or(0) & 0x00FFFFFFu;
}

std::uint16_t ResourceMap::MapAttributes() const { return U16At(map_, kMapAttributesOffset).value_or(0); }

std::optional<std::string> ResourceMap::Name(Key key) const {
  if (NameOffset(key) == kNoName) return std::nullopt;
  const std::size_t start = std::size_t{U16At(map_, kNameListOffset).value_or(0)} + NameOffset(key);
  const auto length = U8At(map_, start);
  const auto text = length ? Slice(map_, start + 1, *length) : std::nullopt;
  if (!text) return std::nullopt;
  return std::string(AsText(*text));
}

std::optional<std::uint32_t> ResourceMap::StatedLength(Key key) const {
  const auto area = fork_.Part(data_start_, data_length_);
  std::array<std::uint8_t, 4> word = {};
  if (!area || area->ReadAt(DataOffset(key), word) != word.size()) return std::nullopt;
  return U32At(word, 0);
}

std::optional<ResourceMap::DataRange> ResourceMap::Data(Key key) const {
  const auto length = StatedLength(key);
  if (!length || *length > data_length_ - DataOffset(key) - kLengthWordSize) return std::nullopt;
  return DataRange{std::uint64_t{data_start_} + DataOffset(key) + kLengthWordSize, *length};
}

bool ResourceMap::Remove(Key key) {
  Entry& entry = entries_[key.entry];
  if ((Attributes(key) & kProtected) != 0) return false;
  if (!entry.left) {
    entry.left.emplace(entry.count);
    for (std::size_t i = 0; i < entry.count; ++i) (*entry.left)[i] = static_cast<std::uint16_t>(i);
  }
  const auto place = std::lower_bound(entry.left->begin(), entry.left->end(), key.position);
  if (place == entry.left->end() || *place != key.position) return false;
  entry.left->erase(place);

  const auto indexed = id_indexes_.find(key.entry);
  if (indexed != id_indexes_.end()) {
    IdIndex& index = indexed->second;
    index.erase(std::lower_bound(index.begin(), index.end(), IdPosition{ID(key), key.position}));
  }
  if (entry.left->empty()) {
    std::erase(listed_, key.entry);
    entry_of_type_.erase(entry.type);
  }
  changed_ = true;
  return true;
}

}  // namespace quillmark
