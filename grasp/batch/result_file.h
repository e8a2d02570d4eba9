// Where the result of a batch goes, and what is there already.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "grasp/batch/tally.h"
#include "host/descriptor.h"
#include "host/error.h"

namespace grasp {

/// A result file cannot be begun or continued; what() names it and says why. It is
/// untouched then.
class ResultFileError : public zelhost::HostError {
 public:
  using HostError::HostError;
};

/// What a run has left that was ended before its time, up to the last line that has an
/// answer: errors behind it may have been those of that day, a full disk for instance,
/// and are done again. All lines, where none has an answer.
struct PartialResult {
  std::uint64_t lines = 0;
  std::uint64_t bytes = 0;  ///< of those
  Tally tally;              ///< of those
  /// The last one of them, by which is seen whether the file belongs to the input.
  std::string witness;
  /// With those that are done again, and with one that has no line break.
  std::uint64_t all_lines = 0;
};

class ResultFile {
 public:
  /// @param path none: standard output.
  /// @param resume continue what is there; nothing there is a good beginning.
  /// @throws ResultFileError, std::system_error.
  ResultFile(const std::optional<std::string>& path, bool resume);

  /// Reads what is there. @param first_line number that the first line must have.
  /// @throws ResultFileError if it is no result of a batch.
  PartialResult examine(std::uint64_t first_line);

  /// Removes what is done again: until then nothing is changed.
  void keep(const PartialResult& partial);

  /// Puts a line behind those that are there.
  void add(const std::string& line);
  /// Whether lines wait to be written.
  [[nodiscard]] bool has_more() const { return waiting() > 0; }
  /// In bytes.
  [[nodiscard]] std::size_t waiting() const { return waiting_.size() - written_; }
  /// Whether write_some() need not be kept from waiting by poll().
  [[nodiscard]] bool is_always_ready() const { return is_regular_; }
  /// Writes all there is where that never waits; else as much as is possible without,
  /// once poll() has said that something is. @throws std::system_error.
  void write_some();
  /// Makes sure that it is there. @throws std::system_error.
  void finish() const;

  [[nodiscard]] int descriptor() const { return descriptor_.get(); }
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  [[noreturn]] void fail() const;
  void lock() const;

  std::string name_;
  zelhost::Descriptor descriptor_;
  bool is_regular_ = false;
  std::string waiting_;
  std::size_t written_ = 0;
};

}  // namespace grasp
