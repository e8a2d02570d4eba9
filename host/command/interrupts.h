// Ctrl-C while a plug-in waits for a program.
#pragma once

#include "host/descriptor.h"

namespace zelrun {

/// The run is to end as one that this signal has killed.
struct Interrupted {
  int signal = 0;
};

/// Ends the process by the signal, so that whoever started it sees that.
[[noreturn]] void end_by(int signal);

/// Notices the signals of the terminal, SIGINT and SIGQUIT, that are sent to all
/// processes of a job while it lives.
///
/// A plug-in that waits in system() ignores them as long as that lasts: the program it
/// waits for dies, and the host would go on with the next method. To block them instead
/// would block them in the program too, which inherits that. So a process of its own,
/// in the same job, blocks them and is asked later which of them came. It holds no
/// files, ends with the host, and is not waited for by a plug-in that waits for
/// whatever children there are.
///
/// Notices nothing where SIGINT is ignored from the start, as in the background of a
/// script, or where there is no room for a process: then the run goes on as it would
/// without.
class InterruptWatch {
 public:
  InterruptWatch();

  /// @return the signal that came; 0 if none did. Cost: two switches of processes.
  [[nodiscard]] int noticed() const;

 private:
  zelhost::Descriptor socket_;
};

}  // namespace zelrun
