// What a host expects of an icon's functions: that create makes an instance where
// it can, and says so where it cannot.
#pragma once

#include "host/check/notes.h"
#include "host/plugin.h"

namespace zelcheck {

void check_second(const zelhost::Icon& icon, const Notes& notes);

/// With the dialog's presets there is an instance, below the given parent. States as facts what
/// its methods are to be fired with.
void check_creation(const zelhost::Icon& icon, const Notes& notes);

/// Creating an instance takes the operations as they are meant, and reports no error.
void check_operations(const zelhost::Icon& icon, const Notes& notes);

/// Creating an instance leaves working folder, locale and standard files alone.
void check_surroundings(const zelhost::Icon& icon, const Notes& notes);

/// A parent that is no unit: nothing is built, and the user is told why.
void check_foreign_parent(const zelhost::Icon& icon, const Notes& notes);

/// A host that makes no unit: the user is told.
void check_no_room(const zelhost::Icon& icon, const Notes& notes);

/// A host that makes fewer units than create asks for: no harm comes of it.
void check_little_room(const zelhost::Icon& icon, const Notes& notes);

/// return_unit once and on the root before it has children; label on the root, after
/// everything else.
void check_order_of_operations(const zelhost::Icon& icon, const Notes& notes);

}  // namespace zelcheck
