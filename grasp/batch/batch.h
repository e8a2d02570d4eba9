// A file of grasps, one a line, answered line by line.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "grasp/batch/line_answer.h"
#include "host/error.h"

namespace grasp {

struct BatchOptions {
  /// A file of lines; "-" is standard input.
  std::string input = "-";
  /// A file that does not exist; none: standard output.
  std::optional<std::string> output;
  /// The file may exist: goes on behind the last line of it that is complete.
  bool resume = false;
  /// Neither progress nor summary.
  bool quiet = false;
  /// Answers hold times, by which no two runs are the same.
  bool times = false;
  /// How many processes answer.
  unsigned workers = 1;
  /// The number of the first line: of a part of a larger file.
  std::uint64_t first_line = 1;
};

/// Longer lines get an error, in bytes.
constexpr std::size_t kLongestInputLine = std::size_t{16} << 20;

enum BatchStatus {
  kBatchDone = 0,        ///< every line has an answer
  kBatchHasErrors = 1,   ///< some lines have an error instead
  kBatchFileFailed = 3,  ///< what cannot be read or written; said on `err`
};

/// Writes a line for each line of the input, in their order and as soon as it can, in
/// memory that does not depend on their number. A line that has no answer, or that two
/// workers have died of, gets a line with an error, and the others are done.
///
/// On SIGINT, SIGQUIT, SIGTERM and SIGHUP the workers are ended and this process dies
/// by the signal; the result can be continued then, as after any other end.
///
/// @param err takes a summary, and what is wrong with a file.
/// @throws zelhost::HostError if the workers cannot begin, or have no room for their files.
BatchStatus run_batch(const BatchOptions& options, const MakeAnswerLine& make, std::ostream& err);

}  // namespace grasp
