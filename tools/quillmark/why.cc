// quillmark why: what each file gives, and why it gives no face or fewer than it lists.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "analysis/collection.h"
#include "analysis/font_extension.h"
#include "collection_faults.h"
#include "commands.h"
#include "face.h"
#include "reason.h"

namespace quillmark::tool {
namespace {

std::string Faces(std::uint32_t count) { return std::to_string(count) + (count == 1 ? " face" : " faces"); }

std::string WhatItGives(const std::string& path, std::uint32_t count) {
  if (fontTypeFromExtension(path.c_str()) != kExtensionTtc) return "gives " + Faces(count);
  const TrueTypeCollectionFont collection(path);
  const std::string lost = LostFaces(path, collection);
  if (lost.empty()) return "gives " + Faces(count);
  return "gives " + std::to_string(count) + " of the " + Faces(collection.faceCount()) + " it lists; " + lost;
}

std::string Explain(const std::string& path) {
  QM_FontArray* made = nullptr;
  if (QM_CreateSpecifier(path.c_str(), 0, QM_ATTRIBUTES_ALL, &made) != 0) return WhyNoFace(path);
  const FontArray array(made);
  std::uint32_t count = 0;
  (void)QM_GetFontCount(array.get(), &count);
  return WhatItGives(path, count);
}

int Why(const std::vector<std::string>& paths) {
  int status = 0;
  for (const std::string& path : paths) {
    const bool can_be_looked_at = CanBeLookedAt(path);
    if (!can_be_looked_at) status = 1;
    std::ostream& out = can_be_looked_at ? std::cout : std::cerr;
    out << ShownPath(path) << ": " << Explain(path)
        << std::endl;  // the two streams in the order of the paths
  }
  return status;
}

}  // namespace

void AddWhy(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("why", "Tell why files give no face, or fewer than they list");
  const auto paths = std::make_shared<std::vector<std::string>>();
  command->add_option("paths", *paths, "Files to explain")->required();
  command->callback([&status, paths] { status = Why(*paths); });
}

}  // namespace quillmark::tool
