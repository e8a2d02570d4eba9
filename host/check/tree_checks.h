// What a host expects of the tree that an icon's create builds.
#pragma once

#include "host/check/notes.h"
#include "host/plugin.h"

namespace zelcheck {

/// Named units, groups that only group, methods that can be fired.
void check_tree(const zelhost::Icon& icon, const Notes& notes);

/// Every unit leads to its instance, and to no other one.
void check_user_pointers(const zelhost::Icon& icon, const Notes& notes);

/// Every method and port is described, and nothing that is not there.
void check_texts(const zelhost::Icon& icon, const Notes& notes);

/// A second instance is described as the first one.
void check_texts_again(const zelhost::Icon& icon, const Notes& notes);

}  // namespace zelcheck
