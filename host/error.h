// What can be wrong with what a user hands to the host.
#pragma once

#include <stdexcept>

namespace zelhost {

/// Base of the errors in files, plug-ins and networks; what() is for the user.
class HostError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zelhost
