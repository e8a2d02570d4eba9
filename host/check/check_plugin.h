// What a host expects of any plug-in, as a list of checks.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace zelcheck {

enum class Verdict { kPassed, kFailed, kSkipped };

struct Result {
  std::string check;  ///< a sentence that holds if it is passed
  Verdict verdict = Verdict::kPassed;
  /// What is wrong, or why it was not tried.
  std::string reason;
  /// What the plug-in printed meanwhile.
  std::string output;
};

/// Runs the checks, from the basic to the involved, each in a process of its own.
/// Those whose precondition is not met are skipped.
/// @param time_limit of each check [s]
/// @param tell is told of each check as it ends.
/// @throws std::system_error if no process can be started.
void check_plugin(const std::filesystem::path& file, double time_limit,
                  const std::function<void(const Result&)>& tell);

}  // namespace zelcheck
