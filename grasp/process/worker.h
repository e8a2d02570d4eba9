// A process that answers texts with texts.
//
// The unit's contract is one thread, so several grasps at a time are several processes.
// Each leads a process group of its own, in which the solver runs too, and stands in a
// scratch folder of its own: the unit's file names go to the shell without quotes, so
// only relative ones are safe wherever the folder is.
//
// A worker ends when its parent does, however that happens: it sees the end of its
// socket after the solve that is running, and removes its folder.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "grasp/process/printed_text.h"
#include "grasp/process/scratch_folder.h"
#include "host/descriptor.h"
#include "host/held_signals.h"
#include "host/packets.h"

namespace grasp {

/// Thrown by an answerer that no request has a chance with any more; what() says why. Its
/// worker reports kNotReady and ends.
class WorkerUnfit : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a worker does with a request. What it throws is told as an error.
using Answerer = std::function<std::string(const std::string& request)>;

/// Runs once, in the worker, in its folder.
/// @param printed what the worker prints; lives as long as the worker.
using MakeAnswerer = std::function<Answerer(const PrintedText& printed)>;

/// What a worker has to say.
struct WorkerReport {
  enum class Kind {
    kReady,     ///< the answerer is made
    kNotReady,  ///< there is none, or no longer: text says why
    kAnswer,    ///< to the request
    kError,     ///< what the answerer threw, with what was printed
    kDied,      ///< the worker is gone: text says how, with what was printed
  };
  Kind kind = Kind::kReady;
  std::string text;

  friend bool operator==(const WorkerReport&, const WorkerReport&) = default;
};

/// The parent's side. No call waits.
class Worker {
 public:
  /// @param signals held back in the parent: the worker releases them for itself.
  /// @throws std::system_error if there can be no process or no folder.
  Worker(const MakeAnswerer& make, const zelhost::HeldSignals& signals);
  /// Ends the worker with all that it has started, at once; its folder is gone then.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  Worker(Worker&&) = delete;
  Worker& operator=(Worker&&) = delete;

  /// Only after an answer or an error to the request before. A worker that is not
  /// ready yet keeps it until it is.
  void ask(std::string request);

  /// For poll(): the descriptor, and what is waited for there.
  [[nodiscard]] int descriptor() const { return socket_.get(); }
  [[nodiscard]] short awaited_events() const;

  /// Sends what can be sent and takes what has come; to be called after poll() and
  /// until it has nothing more to report. After kDied there is nothing more to come.
  std::optional<WorkerReport> advance();

  [[nodiscard]] pid_t process() const { return child_; }

 private:
  void send_rest();
  WorkerReport bury();

  ScratchFolder folder_;
  zelhost::Descriptor socket_;
  pid_t child_ = -1;
  std::string sending_;
  std::size_t sent_ = 0;
  zelhost::PacketAssembler received_;
  bool has_died_ = false;
};

}  // namespace grasp
