// The result for programs, as JSON: docs/json.md describes it, and
// docs/result.schema.json is its schema.
#pragma once

#include <string>

#include "solver/command/report.h"

namespace sdpsol {

/// The whole text. Numbers are finite and read back as the same doubles; what has no
/// finite value is left out.
std::string json_text(const Report& report);

}  // namespace sdpsol
