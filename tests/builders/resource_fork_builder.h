// Builds a resource fork: header, resource data, and a map that lists types, resources and names.
//   std::string fork = ResourceForkBuilder().Add(FourCharCode("FOND"), 128, fond, "Times").Build();
// Layout: "Inside Macintosh: More Macintosh Toolbox", Resource Manager.
#ifndef QUILLMARK_TESTS_BUILDERS_RESOURCE_FORK_BUILDER_H_
#define QUILLMARK_TESTS_BUILDERS_RESOURCE_FORK_BUILDER_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "builders/spoilable_builder.h"
#include "platform/byte_reader.h"

namespace quillmark {

class ResourceForkBuilder : public SpoilableBuilder {
 public:
  static constexpr std::uint8_t kProtected = 0x08;

  // Types are listed in the order in which their first resources came, resources in the order they came.
  ResourceForkBuilder& Add(std::uint32_t type, std::int16_t id, std::string data,
                           std::optional<std::string> name = std::nullopt, std::uint8_t attributes = 0);
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
  // Stores data of equal bytes once, for all the resources that hold them.
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
  static std::size_t ReferenceOffset(const std::string& fork, std::size_t type_index, std::size_t index);

 protected:
  std::string Lay() const override;

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
