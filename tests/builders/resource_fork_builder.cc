#include "builders/resource_fork_builder.h"

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

constexpr std::size_t kHeaderSize = 256;  // 16 bytes of header, 240 kept for the system and the application
constexpr std::size_t kMapHeaderSize = 28;

}  // namespace

ResourceForkBuilder& ResourceForkBuilder::Add(std::uint32_t type, std::int16_t id, std::string data,
                                              std::optional<std::string> name, std::uint8_t attributes) {
  auto entry = std::find_if(types_.begin(), types_.end(), [&](const TypeEntry& t) { return t.type == type; });
  if (start_new_entry_ || entry == types_.end()) entry = types_.insert(types_.end(), TypeEntry{type, {}});
  start_new_entry_ = false;
  entry->resources.push_back({id, std::move(data), std::move(name), attributes});
  return *this;
}

ResourceForkBuilder& ResourceForkBuilder::AddEmptyType(std::uint32_t type) {
  types_.push_back({type, {}});
  return *this;
}

ResourceForkBuilder& ResourceForkBuilder::StartNewEntry() {
  start_new_entry_ = true;
  return *this;
}

ResourceForkBuilder& ResourceForkBuilder::MapFirst() {
  map_first_ = true;
  return *this;
}

ResourceForkBuilder& ResourceForkBuilder::OddOrder() {
  odd_order_ = true;
  return *this;
}

ResourceForkBuilder& ResourceForkBuilder::MapAttributes(std::uint16_t attributes) {
  map_attributes_ = attributes;
  return *this;
}

std::string ResourceForkBuilder::Lay() const {
  std::vector<const Resource*> in_data_order;
  for (const TypeEntry& entry : types_) {
    for (const Resource& resource : entry.resources) in_data_order.push_back(&resource);
  }
  if (odd_order_) std::reverse(in_data_order.begin(), in_data_order.end());
  BigEndianWriter data;
  std::vector<std::pair<const Resource*, std::size_t>> data_offsets;
  for (const Resource* resource : in_data_order) {
    data_offsets.emplace_back(resource, data.size());
    data.U32(static_cast<std::uint32_t>(resource->data.size())).Text(resource->data);
  }

  BigEndianWriter references;
  BigEndianWriter names;
  BigEndianWriter types;
  types.U16(static_cast<std::uint32_t>(types_.size()) - 1);
  for (const TypeEntry& entry : types_) {
    types.U32(entry.type).U16(static_cast<std::uint32_t>(entry.resources.size()) - 1);
    types.U16(static_cast<std::uint32_t>(2 + 8 * types_.size() + references.size()));
    for (const Resource& resource : entry.resources) {
      references.I16(resource.id).U16(resource.name ? static_cast<std::uint32_t>(names.size()) : 0xFFFF);
      if (resource.name) names.Pascal(*resource.name);
      const auto offset = std::find_if(data_offsets.begin(), data_offsets.end(),
                                       [&](const auto& known) { return known.first == &resource; });
      references.U8(resource.attributes).U24(static_cast<std::uint32_t>(offset->second)).U32(0);
    }
  }
  const std::size_t lists = types.size() + references.size();
  const std::size_t type_list = kMapHeaderSize + (odd_order_ ? names.size() : 0);
  const std::size_t name_list = kMapHeaderSize + (odd_order_ ? 0 : lists);
  const std::size_t map_size = kMapHeaderSize + lists + names.size();

  BigEndianWriter header;
  header.U32(static_cast<std::uint32_t>(kHeaderSize + (map_first_ ? map_size : 0)));
  header.U32(static_cast<std::uint32_t>(kHeaderSize + (map_first_ ? 0 : data.size())));
  header.U32(static_cast<std::uint32_t>(data.size())).U32(static_cast<std::uint32_t>(map_size));
  BigEndianWriter map;
  map.Text(header.bytes()).Zeros(6).U16(map_attributes_);
  map.U16(static_cast<std::uint32_t>(type_list)).U16(static_cast<std::uint32_t>(name_list));
  if (odd_order_) map.Text(names.bytes());
  map.Text(types.bytes()).Text(references.bytes());
  if (!odd_order_) map.Text(names.bytes());

  header.Zeros(kHeaderSize - header.size());
  return header.bytes() + (map_first_ ? map.bytes() + data.bytes() : data.bytes() + map.bytes());
}

std::vector<std::size_t> ResourceForkBuilder::FieldOffsets(const std::string& fork) {
  const Bytes bytes = AsBytes(fork);
  const std::size_t map = U32At(bytes, 4).value();
  const std::size_t types = map + U16At(bytes, map + 24).value();
  std::vector<std::size_t> offsets = {0, 2, 4, 6, 8, 10, 12, 14, map + 24, map + 26, types};
  const std::size_t type_count = (U16At(bytes, types).value() + 1u) & 0xFFFFu;
  for (std::size_t t = 0; t < type_count; ++t) {
    const std::size_t entry = types + 2 + 8 * t;
    offsets.insert(offsets.end(), {entry, entry + 4, entry + 6});
    const std::size_t count = (U16At(bytes, entry + 4).value() + 1u) & 0xFFFFu;
    for (std::size_t r = 0; r < count; ++r) {
      const std::size_t reference = ReferenceOffset(fork, t, r);
      offsets.insert(offsets.end(), {reference, reference + 2, reference + 4, reference + 6});
    }
  }
  return offsets;
}

std::size_t ResourceForkBuilder::ReferenceOffset(const std::string& fork, std::size_t type_index,
                                                 std::size_t index) {
  const Bytes bytes = AsBytes(fork);
  const std::size_t map = U32At(bytes, 4).value();
  const std::size_t types = map + U16At(bytes, map + 24).value();
  return types + U16At(bytes, types + 2 + 8 * type_index + 6).value() + 12 * index;
}

}  // namespace quillmark
