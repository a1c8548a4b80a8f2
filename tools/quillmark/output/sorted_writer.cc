#include "output/sorted_writer.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <nlohmann/json.hpp>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "api/font_array.h"
#include "faces/version_order.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kAtATime = 1000;  // faces that are handed over

bool Before(const Json& a, const Json& b, bool are_versions) {
  if (a.is_null() || b.is_null()) return b.is_null() && !a.is_null();
  if (!are_versions) return a < b;
  // NOLINTNEXTLINE(modernize-use-nullptr): an order is compared with 0
  return CompareVersions(a.get_ref<const std::string&>(), b.get_ref<const std::string&>()) < 0;
}

class SortedWriter : public FaceWriter {
 public:
  SortedWriter(std::unique_ptr<FaceWriter> writer, const Field& field)
      : writer_(std::move(writer)), field_(field) {}

  void Add(std::vector<Face> faces, FontArray array) override {
    const std::size_t known = keys_.size();
    try {
      for (const Face& face : faces) keys_.push_back(field_.value(face));
      if (writer_->WritesArray()) {
        std::vector<Face>().swap(faces);  // freed first, so that both are not held while the array grows
        array_.Append(std::move(*array));
      } else if (faces_.empty()) {
        faces_ = std::move(faces);  // no second copy of a file's faces
      } else {
        faces_.insert(faces_.end(), std::move_iterator(faces.begin()), std::move_iterator(faces.end()));
      }
    } catch (const std::bad_alloc&) {
      keys_.resize(known);  // there is room for all faces of a file or for none
      throw;
    }
  }

  void Finish() override {
    std::vector<std::size_t> order(keys_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const bool are_versions = std::string_view(field_.name) == "version";
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return Before(keys_[a], keys_[b], are_versions); });
    std::vector<Json>().swap(keys_);
    if (writer_->WritesArray()) {
      array_.Keep(order);
      writer_->Add({}, FontArray(new QM_FontArray(std::move(array_))));
    } else {
      std::vector<Face> some;
      for (const std::size_t place : order) {
        some.push_back(std::move(faces_[place]));
        if (some.size() == kAtATime || place == order.back()) writer_->Add(std::exchange(some, {}), nullptr);
      }
    }
    writer_->Finish();
  }

 private:
  const std::unique_ptr<FaceWriter> writer_;
  const Field& field_;
  std::vector<Json> keys_;
  std::vector<Face> faces_;  // empty where the writer takes the array
  QM_FontArray array_;       // empty where it takes faces
};

}  // namespace

std::unique_ptr<FaceWriter> Sorted(std::unique_ptr<FaceWriter> writer, const Field& field) {
  return std::make_unique<SortedWriter>(std::move(writer), field);
}

}  // namespace quillmark::tool
