// What the example networks about grasps ask, and what comes out of them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/network_file.h"
#include "tests/network_run.h"

namespace grasp_network {

enum class Question { kExists, kIndividual, kFriction, kAll, kPoint };

/// The numbers of a network. Contacts, force components and coordinates count from 0.
struct Grasp {
  /// One per contact: 1 = frictionless, 3 = with friction.
  std::vector<int> types;
  std::vector<double> friction;
  /// Lower and upper bound of each force component in turn.
  std::vector<double> bounds;
  /// Components x coordinates, row after row: forces = base * coordinates.
  std::vector<double> base;
  /// The contacts that the question about individual contacts is about.
  std::vector<std::size_t> individual;
  /// The contact that the question about one contact is about.
  std::size_t point = 0;

  /// Number of force components, the sum of the types.
  [[nodiscard]] std::size_t components() const;
  /// Number of columns of the base.
  [[nodiscard]] std::size_t coordinates() const { return base.size() / components(); }
  /// First force component of a contact; its normal force is the last of its components.
  [[nodiscard]] std::size_t first_component(std::size_t contact) const;
};

/// The inputs as the file has them, in double precision. @throws std::exception if
/// one of them is missing.
Grasp read_grasp(const zelhost::NetworkFile& file);

enum class Verdict { kFeasible, kInfeasible, kUndetermined, kFailed };

struct Answer {
  Verdict verdict = Verdict::kFailed;
  /// As the question's method published it; what it published first for kExists.
  double objective = 0;
  /// Values of the margin variables by their contact; without those that the
  /// question has none for.
  std::map<std::size_t, double> margins;
  /// One per force component: base * coordinates. Empty unless feasible.
  std::vector<double> forces;
  /// How far each of the forces may be off because the coordinates were published
  /// in single precision.
  std::vector<double> rounding;
  /// The third output of kFriction and kAll; empty for the others.
  std::vector<float> epsilons;
};

/// Runs a network that asks all five questions, each followed by General:Get_Result.
/// @throws std::runtime_error if the outputs of the two contradict each other, or
/// what network_run::run throws.
std::map<Question, Answer> ask(const zelhost::NetworkFile& file);

}  // namespace grasp_network
