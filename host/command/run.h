// zelrun run: a network's outputs, as a table or as JSON.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <vector>

#include "host/command/options.h"

namespace zelrun {

/// Fires what the network's order says and prints the outputs of each method. The
/// first method that fails ends it; what was printed until then stands.
/// @param err gets what the host has to say about the plug-ins, and errors.
/// @return zelhost::kExitDone or zelhost::kExitFailed.
/// @throws what zelhost::read_network and zelhost::Network throw, and
/// std::system_error if the outputs cannot be written.
zelhost::ExitStatus run_network(const RunOptions& options, const Folders& plugin_folders,
                                std::ostream& out, std::ostream& err);

}  // namespace zelrun
