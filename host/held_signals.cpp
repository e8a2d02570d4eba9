#include "host/held_signals.h"

#include <sys/signalfd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace zelhost {
namespace {

constexpr std::array kHeld = {SIGINT, SIGQUIT, SIGTERM, SIGHUP};

}  // namespace

HeldSignals::HeldSignals() {
  sigemptyset(&held_);
  for (const int each : kHeld) {
    struct sigaction action = {};
    sigaction(each, nullptr, &action);
    if (action.sa_handler != SIG_IGN) sigaddset(&held_, each);
  }
  arrival_ = Descriptor(signalfd(-1, &held_, SFD_CLOEXEC));
  if (!arrival_.is_open()) throw std::system_error(errno, std::generic_category(), "signalfd");
  sigprocmask(SIG_BLOCK, &held_, &before_);
}

HeldSignals::~HeldSignals() {
  release();
}

int HeldSignals::arrived() const {
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  for (const int each : kHeld)
    if (sigismember(&held_, each) == 1 && sigismember(&pending, each) == 1) return each;
  return 0;
}

void HeldSignals::release() const {
  sigprocmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace zelhost
