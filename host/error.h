// What can be wrong with what a user hands to the host.
#pragma once

#include <stdexcept>
#include <string>

#include "host/text.h"

namespace zelhost {

/// Base of the errors in files, plug-ins and networks; what() is for the user: one
/// line, whatever the texts of others that it holds.
class HostError : public std::runtime_error {
 public:
  explicit HostError(const std::string& what) : std::runtime_error(on_one_line(what)) {}
};

}  // namespace zelhost
