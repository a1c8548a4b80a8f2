// Builds a resource fork: header, resource data, and a map that lists types, resources and names.
//   std::string fork = ResourceForkBuilder().Add(FourCharCode("FOND"), 128, fond, "Times").Build();
// Layout: "Inside Macintosh: More Macintosh Toolbox", Resource Manager.
#ifndef QUILLMARK_TESTS_BUILDERS_RESOURCE_FORK_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_RESOURCE_FORK_BUILDER_H_

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "builders/big_endian.h"
#include "platform/byte_reader.h"

namespace quillmark {

class ResourceForkBuilder : public SpoilableBuilder {
 public:
  static constexpr std::uint8_t kProtected = 0x08;

  // Types are listed in the order in which their first resources came, resources in the order they came.
  ResourceForkBuilder& Add(std::uint32_t type, std::int16_t id, std::string data,
                           std::optional<std::string> name = std::nullopt, std::uint8_t attributes = 0) {
    auto entry = std::find_if(types_.begin(), types_.end(), [&](const auto& t) { return t.type == type; });
    if (entry == types_.end()) entry = types_.insert(types_.end(), TypeEntry{type, {}});
    entry->resources.push_back({id, std::move(data), std::move(name), attributes});
    return *this;
  }
  // A type that is listed without any resource (count FFFF); may repeat a type that is there.
  ResourceForkBuilder& AddEmptyType(std::uint32_t type) {
    types_.push_back({type, {}});
    return *this;
  }
  // Lays the map before the data.
  ResourceForkBuilder& MapFirst() {
    map_first_ = true;
    return *this;
  }
  // Lays the name list between the map's header and the type list, and data in reverse order.
  ResourceForkBuilder& OddOrder() {
    odd_order_ = true;
    return *this;
  }
  // Resources with the same data have one copy of them.
  ResourceForkBuilder& ShareEqualData() {
    share_equal_data_ = true;
    return *this;
  }
  // 16-bit attributes of the map.
  ResourceForkBuilder& MapAttributes(std::uint16_t attributes) {
    map_attributes_ = attributes;
    return *this;
  }

  // Offset in the fork of the 12-byte reference of resource `index` (from 0) of type entry `type_index`.
  static std::size_t ReferenceOffset(const std::string& fork, std::size_t type_index, std::size_t index) {
    const Bytes bytes = AsBytes(fork);
    const std::size_t map = U32At(bytes, 4).value();
    const std::size_t types = map + U16At(bytes, map + 24).value();
    return types + U16At(bytes, types + 2 + 8 * type_index + 6).value() + 12 * index;
  }

 protected:
  std::string Lay() const override {
    constexpr std::size_t kHeaderSize = 256;  // 16 bytes, 240 kept for the system and the application
    constexpr std::size_t kMapHeaderSize = 28;
    std::vector<const Resource*> order;
    for (const TypeEntry& entry : types_) {
      for (const Resource& resource : entry.resources) order.push_back(&resource);
    }
    if (odd_order_) std::reverse(order.begin(), order.end());
    BigEndianWriter data;
    std::map<const Resource*, std::size_t> places;
    std::map<std::string, std::size_t> shared;
    for (const Resource* resource : order) {
      const std::size_t same = shared.try_emplace(resource->data, data.size()).first->second;
      places[resource] = share_equal_data_ ? same : data.size();
      if (places[resource] == data.size()) data.U32(resource->data.size()).Text(resource->data);
    }
    std::string references, names;
    BigEndianWriter types;
    types.U16(types_.size() - 1);
    for (const TypeEntry& entry : types_) {
      types.U32(entry.type).U16(entry.resources.size() - 1).U16(2 + 8 * types_.size() + references.size());
      for (const Resource& resource : entry.resources) {
        BigEndianWriter reference;
        reference.I16(resource.id).U16(resource.name ? names.size() : 0xFFFF);
        references += reference.U8(resource.attributes).U24(places.at(&resource)).U32(0).bytes();
        if (resource.name) names += BigEndianWriter().Pascal(*resource.name).bytes();
      }
    }
    const std::string lists = types.bytes() + references;
    const std::size_t map_size = kMapHeaderSize + lists.size() + names.size();
    BigEndianWriter header;
    header.U32(kHeaderSize + (map_first_ ? map_size : 0)).U32(kHeaderSize + (map_first_ ? 0 : data.size()));
    header.U32(data.size()).U32(map_size);
    BigEndianWriter map;
    map.Text(header.bytes()).Zeros(6).U16(map_attributes_);
    map.U16(kMapHeaderSize + (odd_order_ ? names.size() : 0));
    map.U16(kMapHeaderSize + (odd_order_ ? 0 : lists.size()));
    map.Text(odd_order_ ? names + lists : lists + names);
    header.Zeros(kHeaderSize - header.size());
    return header.bytes() + (map_first_ ? map.bytes() + data.bytes() : data.bytes() + map.bytes());
  }

 private:
  struct Resource {
    std::int16_t id;
    std::string data;
    std::optional<std::string> name;
    std::uint8_t attributes;
  };
  struct TypeEntry {
    std::uint32_t type;
    std::vector<Resource> resources;
  };
  std::vector<TypeEntry> types_;
  bool map_first_ = false;
  bool odd_order_ = false;
  bool share_equal_data_ = false;
  std::uint16_t map_attributes_ = 0;
};

}  // namespace quillmark

#endif
