// What all checks of instances need: creating one, walking its tree, and calling
// its units by names.
#pragma once

#include <string>
#include <vector>

#include "host/check/notes.h"
#include "host/host.h"

namespace zelcheck {

/// Creates an instance with the dialog's presets.
/// @return the root; null where there is none, which is complained of.
zelhost::Unit* create(zelhost::Host& host, const zelhost::Icon& icon, const Notes& notes,
                      zelhost::MethodTexts* texts = nullptr);

/// All units below this one, each before those below it, in the order in which
/// they were made.
std::vector<zelhost::Unit*> units_below(const zelhost::Unit& root);

/// Those of them that are methods, whether users see them or not.
std::vector<zelhost::Unit*> methods_below(const zelhost::Unit& root);

/// "General:Run", "the root", "a unit without a name below General".
std::string described(const zelhost::Unit& unit);

}  // namespace zelcheck
