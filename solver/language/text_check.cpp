#include "solver/language/text_check.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "solver/language/language_error.h"
#include "solver/language/limits.h"

namespace sdpsol {

bool is_text(const Source& source, Diagnostics& diagnostics) {
  const std::string_view text = source.text();
  if (text.size() > kMaxTextBytes) {
    diagnostics.add(LanguageError({0, 0}, "the text has " + std::to_string(text.size()) +
                                              " bytes; at most " + std::to_string(kMaxTextBytes) +
                                              " are allowed")
                        .diagnostic);
    return false;
  }
  const std::size_t null_byte = text.find('\0');
  if (null_byte != std::string_view::npos) {
    const auto at = static_cast<std::uint32_t>(null_byte);
    diagnostics.add(
        LanguageError({at, at + 1}, "this is not a text: it holds a byte 0").diagnostic);
    return false;
  }
  return true;
}

}  // namespace sdpsol
