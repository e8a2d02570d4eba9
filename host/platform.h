// Which host the operations of the interface lead to. They are C functions
// without a handle, and a plug-in's calls are bound to the one set of them that
// the process has.
#pragma once

#include "host/host.h"

namespace zelhost {

/// Null if there is none; the operations do nothing then.
Host* current_host();

void set_current_host(Host* host);

}  // namespace zelhost
