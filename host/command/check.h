// zelrun check: what a host expects of a plug-in, as a list of passed and failed checks.
#pragma once

#include <filesystem>
#include <iosfwd>

#include "host/command/options.h"

namespace zelrun {

/// Prints each check as it ends, with what the plug-in printed where it failed, and
/// how many there were.
/// @return zelhost::kExitFailed if one failed or was skipped, else zelhost::kExitDone.
/// @throws std::system_error if the list cannot be written, or a check cannot be started.
zelhost::ExitStatus check_plugin(const std::filesystem::path& plugin, double time_limit,
                                 std::ostream& out);

}  // namespace zelrun
