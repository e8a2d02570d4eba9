#include "tests/engines/soak_workers.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

#include "solver/engine/csdp_engine.h"
#include "tests/engines/contest.h"
#include "tests/engines/reordered_engine.h"

namespace sdpsol::testing {
namespace {

/// What a worker says: one write, which the system does not mix with those of others.
struct Message {
  std::uint64_t index = 0;
  Judgement judgement;
};
static_assert(std::is_trivially_copyable_v<Message>);

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// One process, which solves every `stride`-th problem, and the end of its pipe.
struct Worker {
  pid_t process = -1;
  int pipe = -1;
  std::uint64_t next = 0;  ///< the problem that it works on
};

class Soak {
 public:
  Soak(const SoakRange& range, const std::function<void(std::uint64_t)>& progress)
      : range_(range), progress_(progress), end_(range.from + range.count) {}

  Tally run() {
    for (unsigned w = 0; w < range_.jobs; ++w) {
      workers_.push_back({.next = range_.from + w});
      start(workers_.back());
    }
    while (step()) {
    }
    return std::move(tally_);
  }

 private:
  void start(Worker& worker) {
    if (worker.next >= end_) return;
    int ends[2];
    if (::pipe(ends) != 0) fail("pipe");
    worker.process = ::fork();
    if (worker.process < 0) fail("fork");
    if (worker.process == 0) {
      ::close(ends[0]);
      work(worker.next, ends[1]);
    }
    ::close(ends[1]);
    worker.pipe = ends[0];
  }

  [[noreturn]] void work(std::uint64_t index, int out) const {
    try {
      Contest contest = range_.reference_reordered
                            ? Contest(std::make_unique<ReorderedEngine>(make_csdp_engine()))
                            : Contest();
      for (; index < end_; index += range_.jobs) {
        ::alarm(range_.seconds_per_problem);
        const Message message{index, contest.of(engine_problem(range_.seed, index))};
        if (::write(out, &message, sizeof message) != sizeof message) ::_exit(2);
      }
      ::_exit(0);
    } catch (const std::exception& e) {
      const std::string text = std::string("engines_soak: ") + e.what() + "\n";
      [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
      ::_exit(3);
    }
  }

  /// Takes what the workers have to say. False when none is left.
  bool step() {
    std::vector<pollfd> waiting;
    std::vector<Worker*> owners;
    for (Worker& worker : workers_) {
      if (worker.pipe < 0) continue;
      waiting.push_back({worker.pipe, POLLIN, 0});
      owners.push_back(&worker);
    }
    if (waiting.empty()) return false;
    if (::poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR) fail("poll");
    for (std::size_t i = 0; i < waiting.size(); ++i) {
      if (waiting[i].revents != 0) listen(*owners[i]);
    }
    return true;
  }

  void listen(Worker& worker) {
    Message message;
    const ssize_t size = ::read(worker.pipe, &message, sizeof message);
    if (size == static_cast<ssize_t>(sizeof message)) {
      tally_.add(message.index, message.judgement);
      worker.next = message.index + range_.jobs;
      if (progress_) progress_(++done_);
    } else if (size >= 0 || errno != EINTR) {
      bury(worker);
    }
  }

  /// Where a worker ended before its time, another goes on behind the problem that did it.
  void bury(Worker& worker) {
    ::close(worker.pipe);
    worker.pipe = -1;
    int status = 0;
    while (::waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
    }
    if (worker.next >= end_) return;
    tally_.add_unanswered(worker.next, how_it_ended(status));
    worker.next += range_.jobs;
    start(worker);
  }

  static std::string how_it_ended(int status) {
    if (!WIFSIGNALED(status)) {
      return "the process ended with status " + std::to_string(WEXITSTATUS(status));
    }
    if (WTERMSIG(status) == SIGALRM) return "no answer in time";
    return std::string("the process was ended: ") + ::strsignal(WTERMSIG(status));
  }

  SoakRange range_;
  const std::function<void(std::uint64_t)>& progress_;
  std::uint64_t end_;
  std::uint64_t done_ = 0;
  std::vector<Worker> workers_;
  Tally tally_;
};

}  // namespace

Tally soak(const SoakRange& range, const std::function<void(std::uint64_t)>& progress) {
  return Soak(range, progress).run();
}

}  // namespace sdpsol::testing
