// What a host expects of methods: that they do their work or leave it, whatever
// stands at their inputs, in whatever order they are fired.
#pragma once

#include <cstddef>
#include <string>

#include "host/check/inputs.h"
#include "host/check/notes.h"
#include "host/plugin.h"
#include "host/unit.h"

namespace zelcheck {

/// One check of one method.
struct Firing {
  std::size_t method = 0;  ///< its number, in the order of the tree
  Inputs inputs = Inputs::kUnset;
  std::string name;  ///< "METHOD with INPUTS"
};

/// States as facts which inputs each method of an instance is to be fired with.
void state_firings(const zelhost::Unit& root, const Notes& notes);

/// One of these facts.
Firing read_firing(const std::string& fact);

/// One method of a new instance, fired twice, before any other one.
void check_method(const zelhost::Icon& icon, std::size_t method, Inputs inputs, const Notes& notes);

/// All methods of one instance, first to last.
void check_forwards(const zelhost::Icon& icon, const Notes& notes);

/// Last to first, each twice.
void check_backwards(const zelhost::Icon& icon, const Notes& notes);

/// Many instances at once, of which the first and the last still work.
void check_hundred_instances(const zelhost::Icon& icon, const Notes& notes);

/// The library bears the end of the process, with the destructors of its static objects.
/// Ends the process.
void check_end_of_process(const zelhost::Icon& icon, const Notes& notes);

}  // namespace zelcheck
