// One run over the lines of a batch: from the input through the workers to the result.
#pragma once

#include <list>
#include <memory>
#include <vector>

#include "grasp/batch/batch.h"
#include "grasp/batch/batch_progress.h"
#include "grasp/batch/line_reader.h"
#include "grasp/batch/result_file.h"
#include "grasp/batch/tally.h"
#include "grasp/batch/window.h"
#include "grasp/process/worker.h"
#include "host/descriptor.h"
#include "host/held_signals.h"

namespace grasp {

/// One loop waits for whatever comes first: a signal, input, an answer, or room for
/// output. Nothing else ever waits.
class BatchRun {
 public:
  /// @throws ResultFileError, std::system_error.
  BatchRun(const BatchOptions& options, const MakeAnswerLine& make,
           const zelhost::HeldSignals& signals);

  /// @return whether it came to the end: false after a signal.
  /// @throws ResultFileError, std::system_error, zelhost::HostError.
  bool run();

  [[nodiscard]] const Tally& tally() const { return tally_; }

 private:
  // A worker with the line it has.
  struct Hand {
    std::unique_ptr<Worker> worker;
    bool is_ready = false;
    std::uint64_t line = 0;  ///< 0: none
  };

  // Each does what can be done without waiting.
  void take_in();
  void hand_out();
  // Returns whether lines have left the window.
  bool put_out();
  void take_reports();

  // Until one of them can do something. Returns false after a signal.
  bool wait(const BatchProgress& progress);

  // A line that is worth an answer goes into the window.
  void admit(InputLine line);
  void see_end_of_input();
  void take_report(Hand& hand, const WorkerReport& report);
  // Returns the worker that takes the place of one that has died.
  std::unique_ptr<Worker> succeed(const Hand& hand, const std::string& how_it_died);
  void put_out(const WindowLine& line);
  // What is there already belongs to this input.
  void check_witness(const std::string& text) const;
  void begin_writing();
  [[nodiscard]] bool is_done() const;

  const BatchOptions& options_;
  const zelhost::HeldSignals& signals_;
  MakeAnswerer make_;
  zelhost::Descriptor input_;
  ResultFile result_;
  PartialResult partial_;
  LineReader reader_;
  std::uint64_t lines_read_ = 0;
  // All lines that were read are taken in.
  bool needs_input_ = true;
  bool has_all_input_ = false;
  Window window_;
  std::list<Hand> hands_;
  // In a row, without one of them having begun.
  int stillborn_ = 0;
  bool is_writing_ = false;
  Tally tally_;
  BatchState state_;
};

}  // namespace grasp
