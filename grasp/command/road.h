// Where the plug-in and the solver are.
#pragma once

#include "grasp/command/options.h"
#include "grasp/road.h"

namespace grasp::command {

/// Absolute, so that it holds in every folder. @throws zelhost::MissingPlugin.
Road find_road(const Options& options);

}  // namespace grasp::command
