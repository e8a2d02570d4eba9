// Keeping standard output for what the program itself prints.
#pragma once

#include <ostream>

namespace zelrun {

/// While it lives, whatever plug-ins and the programs they start print to standard
/// output goes to standard error; write() still reaches standard output.
class ReservedOutput {
 public:
  /// @throws std::system_error if descriptors cannot be duplicated.
  ReservedOutput();
  ~ReservedOutput();
  ReservedOutput(const ReservedOutput&) = delete;
  ReservedOutput& operator=(const ReservedOutput&) = delete;
  ReservedOutput(ReservedOutput&&) = delete;
  ReservedOutput& operator=(ReservedOutput&&) = delete;

  /// @throws std::system_error if it cannot be written.
  void write(std::string_view text) const;

 private:
  int reserved_;
};

}  // namespace zelrun
