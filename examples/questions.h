// Asks the questions of the unit about an example and puts the answer together:
// verdict, objective, and the contact forces that the solution stands for.
#pragma once

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "examples/example_file.h"
#include "unit/sdpsol_wrapper.h"

namespace examples {

enum class Question { kExists, kIndividual, kFriction, kAll, kPoint };
inline constexpr std::array kQuestions = {Question::kExists, Question::kIndividual,
                                          Question::kFriction, Question::kAll, Question::kPoint};

enum class Verdict {
  kFeasible,
  kInfeasible,
  kUndetermined,
  /// The run itself failed; Answer::error_code says how.
  kFailed
};

struct Answer {
  Verdict verdict = Verdict::kFailed;
  /// As `lastResult.errorCode`.
  int error_code = -1;
  /// What the builder returned, in its single precision; 0 unless feasible, and
  /// 1 for a feasible kExists or LMI.
  double objective = 0;
  /// The solution's variables by name (z0.., epsilon0.. or epsilon; x1.. of an LMI).
  std::map<std::string, double, std::less<>> values;
  /// One per force component: base * (z0, z1, ...). Empty unless feasible.
  std::vector<double> forces;
  /// What kFriction and kAll handed back, one per contact; empty for the others.
  std::vector<double> handed_back;
};

/// Asks one question. kFriction and kAll divide by the number of contacts minus
/// one and are no questions for a single contact (see askable).
/// @param solver where the run happens. Standard output gets its messages, if any.
Answer ask(sdpsol_wrapper& solver, const Grasp& grasp, Question question);

/// Is there an x for which the matrix inequality holds?
Answer ask(sdpsol_wrapper& solver, const Lmi& lmi);

/// False where the question's objective would be divided by 0.
bool askable(const Grasp& grasp, Question question);

/// A new folder for a solver's files, gone with the object. Its name goes to the
/// shell unquoted, so it stands in /tmp whatever TMPDIR says.
class WorkingFolder {
 public:
  /// @throws std::system_error if it cannot be made.
  WorkingFolder();
  ~WorkingFolder();
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  WorkingFolder(WorkingFolder&&) = delete;
  WorkingFolder& operator=(WorkingFolder&&) = delete;

  /// A driver with its files in this folder.
  /// @param command path of the command, which may hold blanks.
  [[nodiscard]] sdpsol_wrapper solver(std::string_view command) const;

 private:
  std::filesystem::path path_;
};

}  // namespace examples
