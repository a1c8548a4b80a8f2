#include "builders/resource_fork_builder.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace quillmark {
namespace {

constexpr std::size_t kHeaderSize = 256;  // 16 bytes of header, 240 kept for the system and the application
constexpr std::size_t kMapHeaderSize = 28;

}  // namespace

ResourceForkBuilder& ResourceForkBuilder::Add(std::uint32_t type, std::int16_t id, std::string data,
                                              std::optional<std::string> name, std::uint8_t attributes) {
  auto entry = std::find_if(types_.begin(), types_.end(), [&](const TypeEntry& t) { return t.type == type; });
  if (entry == types_.end()) entry = types_.insert(types_.end(), TypeEntry{type, {}});
  entry->resources.push_back({id, std::move(data), std::move(name), attributes});
  return *this;
}

std::string ResourceForkBuilder::Lay() const {
  std::vector<const Resource*> in_data_order;
  for (const TypeEntry& entry : types_) {
    for (const Resource& resource : entry.resources) in_data_order.push_back(&resource);
  }
  if (odd_order_) std::reverse(in_data_order.begin(), in_data_order.end());
  BigEndianWriter data;
  std::map<const Resource*, std::size_t> data_offsets;
  std::map<std::string_view, std::size_t> known;
  for (const Resource* resource : in_data_order) {
    const auto [stored, is_new] = known.try_emplace(resource->data, data.size());
    data_offsets[resource] = share_equal_data_ ? stored->second : data.size();
    if (share_equal_data_ && !is_new) continue;
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
      references.U8(resource.attributes).U24(static_cast<std::uint32_t>(data_offsets[&resource])).U32(0);
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

std::size_t ResourceForkBuilder::ReferenceOffset(const std::string& fork, std::size_t type_index,
                                                 std::size_t index) {
  const Bytes bytes = AsBytes(fork);
  const std::size_t map = U32At(bytes, 4).value();
  const std::size_t types = map + U16At(bytes, map + 24).value();
  return types + U16At(bytes, types + 2 + 8 * type_index + 6).value() + 12 * index;
}

}  // namespace quillmark
