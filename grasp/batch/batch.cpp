#include "grasp/batch/batch.h"

#include <csignal>
#include <system_error>

#include "grasp/batch/batch_run.h"
#include "host/held_signals.h"

namespace grasp {

BatchStatus run_batch(const BatchOptions& options, const MakeAnswerLine& make, std::ostream& err) {
  // When it goes, what arrived ends this process: after the run, whose workers are
  // gone then.
  const zelhost::HeldSignals signals;
  try {
    BatchRun run(options, make, signals);
    if (!run.run()) return kBatchHasErrors;
    if (!options.quiet) err << "grasp: " << run.tally().summary() << std::endl;
    return run.tally().errors() == 0 ? kBatchDone : kBatchHasErrors;
  } catch (const ResultFileError& error) {
    err << "grasp: error: " << error.what() << std::endl;
  } catch (const std::system_error& error) {
    err << "grasp: error: " << zelhost::on_one_line(error.what()) << std::endl;
  }
  return kBatchFileFailed;
}

}  // namespace grasp
