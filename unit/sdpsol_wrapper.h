// The driver of the external solver: one object per unit instance that writes
// a definition, runs the command, reads the result back, and composes the two
// families of problems that the unit knows (a linear matrix inequality, the
// internal forces of a grasp). The members stand in several sources by subject.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Plain data plus operations: copyable, nothing virtual, nothing shared.
///
/// One thread at a time; every operation blocks until it is done, those that
/// run the command until the command is done. Two objects must not share file
/// names. Failures are return codes and `lastResult.errorCode`; the only
/// exceptions are the out-of-range error of `parseResult`, which passes through
/// everything that calls `run`, and the standard library's lack of memory.
/// Numbers are written with six significant digits and read with a decimal
/// point whatever the process's locale says.
class sdpsol_wrapper {
 public:
  /// The solver's runtime parameters, each named like the keyword it is written under.
  struct parameters {
    double NU = 0.0;
    double GAMMA = 0.0;
    int MAXITER = 0;
    double ABSTOL = 0.0;
    double RELTOL = 0.0;
    double BIGM = 0.0;
  };

  /// What the last run gave.
  struct result {
    /// -1 never run; 100 under way or abandoned; 0 good; 1 definition file not
    /// writable; 2 command returned nonzero; 3 result file not readable; 4 the
    /// result text could not be parsed.
    int errorCode = -1;
    /// True when the result text holds neither verdict against it.
    bool feasible = false;
    /// 0 when the problem has no objective.
    double objectiveValue = 0.0;
    /// Scalars by their name, element k of a matrix X (from 0, in text order) as X_k.
    std::vector<std::string> variableNames;
    /// Parallel to `variableNames`.
    std::vector<double> variableValues;
    /// Length of both lists.
    int valueCount = 0;
  };

  std::string definitionFile;
  std::string resultFile;
  /// command + " -q -o " + resultFile + " " + definitionFile, nothing quoted:
  /// the shell sees the texts as they are.
  std::string commandLine;
  /// Written as it stands by the next run.
  std::string definition;
  /// The last result file that could be read, unchanged.
  std::string resultText;
  result lastResult;

  sdpsol_wrapper(std::string command, std::string definitionFileName, std::string resultFileName);

  // The run cycle (sdpsol_run.cpp).

  /// Writes `definition` to `definitionFile`, replacing what was there.
  /// @return 0, or 1 when the file cannot be opened. A failing write is not noticed.
  int writeDefinition();

  /// Runs `commandLine` through the shell. @return the status as `system` gives it.
  int callsdpsol();

  /// Reads all of `resultFile` into `resultText`, which stays as it is on failure.
  /// @return 0, or 1 when the file cannot be opened. Memory: the old and the new text.
  int readResult();

  /// Write, call, read, parse; the first failure ends it with a report on
  /// standard output. @return 0 to 4, also left in `lastResult.errorCode`.
  /// @throws std::out_of_range from `parseResult`, errorCode stays 100.
  int run();

  /// Prints "using sdpsol with: " and the command line to standard output.
  void print_command_values();

  /// Fills `lastResult` from `resultText` (sdpsol_parse.cpp, where the layout is described).
  /// errorCode is 100 afterwards. @return 0, or 1 when the text sends the scan
  /// round in a circle; what was read until then is in the lists.
  /// @throws std::out_of_range ("basic_string::substr...") when a malformed
  /// text makes a piece start behind its end; what was read until then stays.
  /// Cost: linear in the text and in the lists that come out.
  int parseResult();

  // Runtime parameters (sdpsol_parameters.cpp).

  /// NU 10, GAMMA 100, MAXITER 100, ABSTOL and RELTOL 4.4e-06, BIGM 15000.
  parameters getDefaultParameters();

  /// Cuts every assignment to one of the six keywords out of `definition`, each
  /// from the keyword (also inside a longer word) to the next ";", and puts the
  /// six new ones in front. A keyword with no ";" behind it stays.
  /// Cost: linear in the text.
  void setParameters(parameters p);

  // Linear matrix inequality (sdpsol_lmi.cpp).

  /// Is there an x with P0 + x1*P1 + ... + x(N-1)*P(N-1) positive definite
  /// (`strict`) or semidefinite?
  /// @param matrices N square matrices of one size, as rows; symmetry and sizes
  /// are not looked at. A row without elements is written as a single 0, with a warning.
  /// @return `lastResult.feasible` after the run.
  bool isFeasible(std::vector<std::vector<std::vector<double>>> matrices, bool strict);

  // Internal forces of a grasp (sdpsol_frame.cpp, sdpsol_intforce.cpp, sdpsol_answer.cpp).
  //
  // All counts are from 0. `contactTypes`: 1 = frictionless (one force
  // component, the normal force), 3 = with friction (two tangential, then the
  // normal). sum_cdim: the number of force components, the sum of the types.
  // `nullspaceBase`: sum_cdim x n_z, row after row. `frictionCoefficients`: one
  // per contact, those of type 1 unused. `forceBounds`: lower and upper bound
  // of each component in turn.
  //
  // Lists that are too short count as continued with 0, with one warning.
  // Where types add up to 0, or the base is shorter than more than 65,536
  // components, nothing is run: the answer is 0 with one warning, `definition`
  // stays and `lastResult` is reset with errorCode 100.

  /// The text that declares the coordinates z0.. and defines the forces x0.. by them.
  /// Cost: linear in the text, as for all of these.
  std::string intforce_basic_defs(std::vector<double> nullspaceBase, std::vector<int> contactTypes,
                                  std::uint32_t sum_cdim, std::uint32_t n_z);

  /// The text with the friction matrices P0.. and the bounds of the forces. A
  /// type other than 1 and 3 gets no matrix, with a warning.
  std::string intforce_basic_constr(std::vector<int> contactTypes,
                                    std::vector<double> frictionCoefficients,
                                    std::vector<double> forceBounds, std::uint32_t sum_cdim,
                                    std::uint32_t n_z);

  /// Does `value` occur in `list`?
  bool isInVector(int value, std::vector<int> list);

  /// Is there an internal force strictly inside every friction cone and the bounds?
  /// @return 1 or 0; 0 also when the run failed.
  float internalForceExists(std::vector<double> nullspaceBase, std::vector<int> contactTypes,
                            std::vector<double> frictionCoefficients,
                            std::vector<double> forceBounds);

  /// Maximises the mean, over the listed contacts, of the normal force (type 3)
  /// or the margin (type 1). Numbers that are no contact are warned of and left
  /// out of the sum, not out of the divisor. An empty list asks for no objective.
  /// @return the objective value, 0 when there is no force or the run failed.
  float internalForceMaximizeIndividual(std::vector<double> nullspaceBase,
                                        std::vector<int> contactTypes,
                                        std::vector<double> frictionCoefficients,
                                        std::vector<double> forceBounds,
                                        std::vector<int> contactsToMaximize);

  /// Maximises the sum of the margins of all contacts with friction, divided by
  /// the number of all contacts minus one; normal forces of the others above 1.
  /// @param values overwritten in place with the first values of the run, at
  /// most one per contact, never resized.
  /// @return as above.
  float internalForceMaximizeFrictionContacts(std::vector<double> nullspaceBase,
                                              std::vector<int> contactTypes,
                                              std::vector<double> frictionCoefficients,
                                              std::vector<double> forceBounds,
                                              std::vector<double>* values);

  /// Maximises the sum of the margins of contacts with friction, divided by the
  /// number of all contacts minus one, plus the sum of the other margins.
  /// @param values as above.  @return as above.
  float internalForceMaximizeAll(std::vector<double> nullspaceBase, std::vector<int> contactTypes,
                                 std::vector<double> frictionCoefficients,
                                 std::vector<double> forceBounds, std::vector<double>* values);

  /// Maximises the margin of one contact. A number that is no contact leaves
  /// the margin without a bound.
  /// @return as above.
  float internalForceMaximizePointContact(std::vector<double> nullspaceBase,
                                          std::vector<int> contactTypes,
                                          std::vector<double> frictionCoefficients,
                                          std::vector<double> forceBounds, std::uint32_t contact);
};
