#include "api/creation_context.h"

#include <utility>
#include <variant>

#include "analysis/checksum.h"
#include "quillmark/quillmark.h"

namespace quillmark {

Creation::Creation(const FileSystem& system, const std::string& font_path, std::uint32_t attributes,
                   CreationResult& target)
    : access(system, &budget,
             (attributes & kDataChecksums) ? FileAccess::Reads::kWhole : FileAccess::Reads::kParts),
      file(access, font_path),
      request(attributes),
      printer_fonts(access, attributes),
      result(target) {}

void Creation::AddFace(QM_FontSpecifier specifier, FaceNames names) {
  const auto keep = [this](std::uint32_t attribute, OmString& field, OmString& name) {
    if (!(request & attribute)) return;
    field = std::move(name);
    ChargeBytes(&budget, 8 * field.str().size());
  };
  keep(QM_ATTRIBUTE_FOUNDRY, specifier.foundry, names.foundry);
  keep(QM_ATTRIBUTE_FAMILY, specifier.family, names.family);
  keep(QM_ATTRIBUTE_VERSION, specifier.version, names.version);
  keep(QM_ATTRIBUTE_POSTSCRIPT_NAME, specifier.postScriptName, names.post_script_name);
  keep(QM_ATTRIBUTE_DISPLAY_NAME, specifier.displayName, names.display_name);
  keep(QM_ATTRIBUTE_FULL_NAME, specifier.fullName, names.full_name);
  keep(QM_ATTRIBUTE_WINDOWS_FULL_NAME, specifier.windowsFullName, names.windows_full_name);
  specifier.attributes = request;
  budget.Charge(Budget::kFace);
  result.faces.push_back(std::move(specifier));
}

void Creation::AddFault(FaceFault fault) {
  if (!std::holds_alternative<DuplicateFault>(fault.why)) ++result.lost_faces;
  const auto* style = std::get_if<StyleFault>(&fault.why);
  const bool is_bitmap = style != nullptr && style->kind == StyleFault::kNoPrinterName;
  if (is_bitmap && !result.faults.empty()) return;
  if (result.faults.size() < CreationResult::kMostFaults) {
    result.faults.push_back(std::move(fault));
  } else {
    result.faults_dropped = true;
  }
}

}  // namespace quillmark
