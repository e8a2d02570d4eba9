// Standard output: written whole or with an error, and kept for what the program
// itself prints.
#pragma once

#include <functional>
#include <ostream>
#include <string_view>

#include "host/descriptor.h"

namespace zelhost {

/// Lets `write` put something on the stream, and flushes it: a user sees what is done
/// before what takes its time, and what plug-ins print next stands behind it.
/// @throws std::system_error if the stream fails.
void print(std::ostream& out, const std::function<void(std::ostream&)>& write);

/// Takes the place of the standard descriptors where they are closed, so that no file of
/// ours or of a plug-in becomes one of them. Standard output still fails when it is
/// written, as one that is closed does.
void open_missing_descriptors();

/// From now on, and until the process ends, whatever plug-ins and the programs they
/// start print to standard output goes to standard error: a plug-in may print as late
/// as when it is unloaded. write() still reaches standard output.
class ReservedOutput {
 public:
  /// @throws std::system_error if descriptors cannot be duplicated.
  ReservedOutput();

  /// @throws std::system_error if it cannot be written.
  void write(std::string_view text) const;

 private:
  Descriptor reserved_;
};

}  // namespace zelhost
