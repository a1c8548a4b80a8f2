#include "library/name_letters.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

namespace quillmark::tool {

bool HoldsLetterOrDigit(const std::string& name) {
  std::mbstate_t state{};
  for (std::size_t i = 0; i < name.size();) {
    wchar_t character = 0;
    const std::size_t length = std::mbrtowc(&character, name.data() + i, name.size() - i, &state);
    const bool is_known = length <= name.size() - i;
    if (!is_known || std::iswalnum(static_cast<std::wint_t>(character)) != 0) return true;
    i += std::max<std::size_t>(length, 1);
  }
  return false;
}

}  // namespace quillmark::tool
