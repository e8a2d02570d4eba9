// Definitions of grasps with many contacts, as the driver composes them.
#pragma once

#include <string>

namespace bench {

enum class Question { kExists, kAll };

/// @param contacts at least 3, all with friction, with a planted internal force.
std::string many_contacts(int contacts, Question question);

}  // namespace bench
