// One grasp: asked, printed, drawn.
#pragma once

#include "grasp/asker.h"
#include "grasp/command/options.h"

namespace grasp::command {

/// @param home what relative paths of the options start from; the working directory is
/// for the asker's files. @return the exit status.
/// @throws what zelhost::report_failures makes an exit status of.
int answer_single(const SingleOptions& single, const Options& options, const Road& road,
                  const std::filesystem::path& home);

}  // namespace grasp::command
