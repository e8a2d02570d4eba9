// zelrun list: what a plug-in brings, as text for people.
#pragma once

#include <iosfwd>

#include "host/plugin.h"

namespace zelrun {

/// Creates one instance of each icon, with the dialog as it comes up, and prints
/// its tree. What the plug-in does wrong is said on `err`.
/// @throws zelhost::CreationError; std::system_error if it cannot be written.
void list_plugin(const zelhost::Plugin& plugin, std::ostream& out, std::ostream& err);

}  // namespace zelrun
