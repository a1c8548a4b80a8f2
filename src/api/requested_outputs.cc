#include "api/requested_outputs.h"

#include "quillmark/quillmark.h"

namespace quillmark {

NameOutputs RequestedNames(std::uint32_t request, QM_FontSpecifier& specifier) {
  const auto wanted = [request](std::uint32_t attribute, OmString& field) {
    return (request & attribute) ? &field : nullptr;
  };
  return {
      .foundry = wanted(QM_ATTRIBUTE_FOUNDRY, specifier.foundry),
      .family_name = wanted(QM_ATTRIBUTE_FAMILY, specifier.family),
      .version = wanted(QM_ATTRIBUTE_VERSION, specifier.version),
      .post_script_name = wanted(QM_ATTRIBUTE_POSTSCRIPT_NAME, specifier.postScriptName),
      .display_name = wanted(QM_ATTRIBUTE_DISPLAY_NAME, specifier.displayName),
      .full_name = wanted(QM_ATTRIBUTE_FULL_NAME, specifier.fullName),
      .windows_full_name = wanted(QM_ATTRIBUTE_WINDOWS_FULL_NAME, specifier.windowsFullName),
  };
}

}  // namespace quillmark
