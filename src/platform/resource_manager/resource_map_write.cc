// Lays out a resource map anew: 256 bytes of header, the data that remaining resources use, the map.

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/resource_manager/resource_map.h"
#include "platform/resource_manager/resource_map_format.h"

namespace quillmark {

using namespace resource_format;

namespace {

constexpr std::uint32_t kDataStart = 256;  // after the header, 240 bytes of the system and the application
constexpr std::uint32_t kLargestOffset = 0xFFFF;
constexpr std::uint32_t kOutsideDataArea = 0xFFFFFF;

class Output {
 public:
  void U8(std::size_t value) { bytes_.push_back(static_cast<std::uint8_t>(value & 0xFF)); }
  void U16(std::size_t value) {
    U8(value / 0x100);
    U8(value);
  }
  void U24(std::size_t value) {
    U8(value / 0x10000);
    U16(value);
  }
  void U32(std::size_t value) {
    U16(value / 0x10000);
    U16(value);
  }
  void Pascal(std::string_view text) {
    U8(text.size());
    Append(AsBytes(text));
  }
  void Append(Bytes bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  void PadTo(std::size_t size) { bytes_.resize(size); }
  std::size_t size() const { return bytes_.size(); }
  Bytes bytes() const { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
};

// A range of the old data area that is kept, and its place in the new one.
struct Kept {
  std::uint64_t start;
  std::uint64_t end;
  std::uint64_t moved_to;
};

// Joins what overlaps, so that resources that share data go on sharing them and the new area is never larger
// than the old one; the order stays, so no offset grows.
std::vector<Kept> Pack(std::vector<Kept> ranges) {
  std::ranges::sort(ranges, {}, &Kept::start);
  std::vector<Kept> packed;
  for (const Kept& range : ranges) {
    if (!packed.empty() && range.start <= packed.back().end) {
      packed.back().end = std::max(packed.back().end, range.end);
      continue;
    }
    const std::uint64_t to =
        packed.empty() ? 0 : packed.back().moved_to + packed.back().end - packed.back().start;
    packed.push_back({range.start, range.end, to});
  }
  return packed;
}

std::uint32_t NewOffset(const std::vector<Kept>& packed, std::uint32_t old) {
  const auto after = std::ranges::upper_bound(packed, old, {}, &Kept::start);
  if (after == packed.begin() || old >= std::prev(after)->end) return kOutsideDataArea;
  return static_cast<std::uint32_t>(std::prev(after)->moved_to + (old - std::prev(after)->start));
}

}  // namespace

class ResourceMapLayout {
 public:
  explicit ResourceMapLayout(const ResourceMap& old) : old_(old) {}

  bool Lay() { return LayLists() && PackData() && LayReferences() && LayHeaders(); }
  bool Send(const ByteSink& sink) const;

 private:
  struct List {
    std::uint16_t entry;
    std::size_t offset;  // from the type list
    std::size_t count;
  };
  bool LayLists();
  bool PackData();
  bool LayReferences();
  bool LayHeaders();

  const ResourceMap& old_;
  std::vector<List> lists_;
  std::size_t lists_size_ = 0;  // of the type list and all reference lists
  std::vector<ResourceMap::Key> keys_;
  std::vector<Kept> data_;
  std::uint64_t data_length_ = 0;
  Output references_;
  Output names_;
  Output header_;
  Output map_;
};

// A list that several types share is written once for each type. Only the 16-bit offsets bound the size of
// all lists, so they are checked before anything is collected.
bool ResourceMapLayout::LayLists() {
  for (const std::uint16_t entry : old_.listed_) {
    const std::size_t count = old_.entries_[entry].CountLeft();
    if (count > 0) lists_.push_back({entry, 0, count});
  }
  lists_size_ = kCountSize + lists_.size() * kTypeSize;
  for (List& list : lists_) {
    if (lists_size_ > kLargestOffset) return false;
    list.offset = lists_size_;
    lists_size_ += list.count * kReferenceSize;
  }
  for (const List& list : lists_) {
    for (std::size_t i = 0; i < list.count; ++i) {
      keys_.push_back({list.entry, old_.entries_[list.entry].Left(i)});
    }
  }
  return true;
}

// Of data that overrun the data area the length word is kept, if it lies inside. Packing never moves data
// nearer to the area's end, so a length that overran the old area overruns the new one.
bool ResourceMapLayout::PackData() {
  std::vector<Kept> used;
  for (const ResourceMap::Key key : keys_) {
    const std::uint64_t start = old_.DataOffset(key);
    if (start + kLengthWordSize > old_.data_length_) continue;
    if (!old_.StatedLength(key)) return false;
    const auto data = old_.Data(key);
    used.push_back({start, start + kLengthWordSize + (data ? data->length : 0), 0});
  }
  data_ = Pack(std::move(used));
  if (!data_.empty()) data_length_ = data_.back().moved_to + data_.back().end - data_.back().start;
  return true;
}

bool ResourceMapLayout::LayReferences() {
  std::unordered_map<std::uint16_t, std::size_t> new_names;  // by old offset: names may be shared as well
  for (const ResourceMap::Key key : keys_) {
    std::size_t name_offset = kNoName;
    if (const auto name = old_.Name(key)) {
      const auto [known, is_new] = new_names.try_emplace(old_.NameOffset(key), names_.size());
      name_offset = known->second;
      if (name_offset >= kNoName) return false;
      if (is_new) names_.Pascal(*name);
    }
    references_.U16(static_cast<std::uint16_t>(old_.ID(key)));
    references_.U16(name_offset);
    references_.U8(old_.Attributes(key));
    references_.U24(NewOffset(data_, old_.DataOffset(key)));
    references_.U32(0);
  }
  return true;
}

bool ResourceMapLayout::LayHeaders() {
  const std::size_t name_list = kMapHeaderSize + lists_size_;
  if (names_.size() > 0 && name_list > kLargestOffset) return false;
  const std::uint64_t map_length = name_list + names_.size();
  if (kDataStart + data_length_ + map_length > 0xFFFFFFFFu) return false;
  header_.U32(kDataStart);
  header_.U32(kDataStart + data_length_);
  header_.U32(data_length_);
  header_.U32(map_length);

  map_.Append(header_.bytes());
  map_.Append(Slice(old_.map_, kForkHeaderSize, kBookkeepingSize).value_or(Bytes()));
  map_.U16(kMapHeaderSize);
  map_.U16(std::min<std::size_t>(name_list, kLargestOffset));  // cut only when there are no names
  map_.U16(lists_.size() - 1);
  for (const List& list : lists_) {
    map_.U32(old_.entries_[list.entry].type);
    map_.U16(list.count - 1);
    map_.U16(list.offset);
  }
  map_.Append(references_.bytes());
  map_.Append(names_.bytes());

  // Copies the bytes of the system and the application between header and data.
  const std::size_t between_end = std::min({kDataStart, old_.data_start_, old_.map_start_});
  if (between_end > kForkHeaderSize) {
    std::vector<std::uint8_t> between(between_end - kForkHeaderSize);
    if (old_.fork_.ReadAt(kForkHeaderSize, between) != between.size()) return false;
    header_.Append(between);
  }
  header_.PadTo(kDataStart);
  return true;
}

bool ResourceMapLayout::Send(const ByteSink& sink) const {
  if (!sink(header_.bytes())) return false;
  for (const Kept& kept : data_) {
    if (!old_.fork_.Copy(old_.data_start_ + kept.start, kept.end - kept.start, sink)) return false;
  }
  return sink(map_.bytes());
}

bool ResourceMap::Write(const ByteSink& sink) const {
  ResourceMapLayout layout(*this);
  return layout.Lay() && layout.Send(sink);
}

}  // namespace quillmark
