// The signals that end a process, held back while it has others to end first.
#pragma once

#include <csignal>

#include "host/descriptor.h"

namespace zelhost {

/// While it lives, SIGINT, SIGQUIT, SIGTERM and SIGHUP wait; those that came do their
/// work when it goes. So whoever has processes and files to remove sees arrived(),
/// removes them, and dies by the very signal, which a shell takes notice of. Signals
/// that are ignored from the start stay ignored. One thread.
class HeldSignals {
 public:
  /// @throws std::system_error if there is no descriptor left.
  HeldSignals();
  ~HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  HeldSignals(HeldSignals&&) = delete;
  HeldSignals& operator=(HeldSignals&&) = delete;

  /// Readable when one has come: for poll(), not to be read.
  [[nodiscard]] int descriptor() const { return arrival_.get(); }

  /// One that has come; 0 if none has.
  [[nodiscard]] int arrived() const;

  /// For a child, which has nobody to end.
  void release() const;

 private:
  sigset_t held_{};
  sigset_t before_{};
  Descriptor arrival_;
};

}  // namespace zelhost
