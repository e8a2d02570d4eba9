// Where the plug-in and the solver are.
#pragma once

#include "grasp/asker.h"
#include "grasp/command/options.h"

namespace grasp::command {

/// Absolute, so that it holds in every folder. @throws zelhost::PluginError if there is
/// no such plug-in.
Road find_road(const Options& options);

}  // namespace grasp::command
