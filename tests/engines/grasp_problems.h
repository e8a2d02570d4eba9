// Grasps as problems for engines: the definitions of the five questions, read and
// taken apart as the command does.
#pragma once

#include <random>
#include <string>

#include "tests/engines/engine_problems.h"

namespace sdpsol::testing {

enum class GraspQuestion { kExists, kIndividual, kFriction, kAll, kPoint };

/// The problem of a definition without errors. @throws std::runtime_error of one with.
Problem problem_of(const std::string& definition);

// Two to twelve contacts on a ball, lengths and forces in units of 1e-4 to 1e4.
EngineProblem force_in_grasp(std::mt19937& random, GraspQuestion question);
EngineProblem twist_of_grasp(std::mt19937& random, GraspQuestion question);

// One to twelve contacts, any question, and any base with the planted answer: no
// places and normals need exist that it belongs to. Now and then a single column.
EngineProblem force_in_base(std::mt19937& random);
EngineProblem multipliers_of_base(std::mt19937& random);
EngineProblem frictionless_base(std::mt19937& random);

// Grasps on and near the border, any question.
EngineProblem contradicting_bounds(std::mt19937& random);
EngineProblem tight_bounds(std::mt19937& random);
EngineProblem bounds_of_a_million(std::mt19937& random);
/// Contacts that face each other, slanted by just about the friction angle.
EngineProblem slanted_pairs(std::mt19937& random);
/// Two plates of contacts in rows, pressed together.
EngineProblem facing_plates(std::mt19937& random);
/// One plate: it can only push.
EngineProblem single_plate(std::mt19937& random);

}  // namespace sdpsol::testing
