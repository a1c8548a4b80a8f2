#include "output/sorted_writer.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "api/font_array.h"
#include "faces/array_forms.h"
#include "faces/version_order.h"

namespace quillmark::tool {
namespace {

using Json = nlohmann::ordered_json;

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

  void Add(const std::vector<Face>& faces, const QM_FontArray& array) override {
    faces_.insert(faces_.end(), faces.begin(), faces.end());
    Join(*array_, array);
  }

  void Finish() override {
    std::vector<Json> keys;
    for (const Face& face : faces_) keys.push_back(field_.value(face));
    std::vector<std::size_t> order(faces_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const bool are_versions = std::string_view(field_.name) == "version";
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return Before(keys[a], keys[b], are_versions); });
    for (const std::size_t place : order) {
      const FontArray one = EmptyArray();
      one->push_back(array_->view(place));
      writer_->Add({std::move(faces_[place])}, *one);
    }
    writer_->Finish();
  }

  bool WritesAtOnce() const override { return false; }

 private:
  const std::unique_ptr<FaceWriter> writer_;
  const Field& field_;
  std::vector<Face> faces_;
  FontArray array_ = EmptyArray();  // the same faces
};

}  // namespace

std::unique_ptr<FaceWriter> Sorted(std::unique_ptr<FaceWriter> writer, const Field& field) {
  return std::make_unique<SortedWriter>(std::move(writer), field);
}

}  // namespace quillmark::tool
