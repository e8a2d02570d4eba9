// The result file.
#pragma once

#include <string>

#include "solver/command/report.h"

namespace sdpsol {

/// The whole text of the result file: a heading for people, then the part that
/// other programs parse. The heading holds none of that part's marker words, no
/// names of variables and no names of files.
std::string result_text(const Report& report);

}  // namespace sdpsol
