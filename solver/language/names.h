// Which words a definition may use as names.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace sdpsol {

/// The parameters of a run, assigned and read like names.
inline constexpr std::array<std::string_view, 6> kParameterNames = {"NU",     "GAMMA",  "MAXITER",
                                                                    "ABSTOL", "RELTOL", "BIGM"};

bool is_parameter(std::string_view name);
bool is_keyword(std::string_view name);
/// inf and nan in any case: a host that computed one writes it like a name.
bool is_not_finite(std::string_view name);

/// Why `name` cannot be given to a value or a variable; nothing if it can.
std::optional<std::string> why_reserved(std::string_view name);

}  // namespace sdpsol
