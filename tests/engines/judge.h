// What two outcomes of one problem say about each other, and about what was planted.
#pragma once

#include <cstdint>
#include <string>

#include "solver/decide/outcome.h"
#include "tests/engines/engine_problems.h"

namespace sdpsol::testing {

/// What was proven about a problem: a verdict, or one of the reasons for none that
/// are claims themselves.
enum class Claim : std::uint8_t {
  kNone,
  kFeasible,
  kInfeasible,
  kEmptyBox,    ///< no point in the box
  kBorderline,  ///< no point with room
};

Claim claim_of(const Outcome& outcome);
const char* name_of(Claim claim);

/// What became of the reference as the fallback of the engine under test.
enum class Fallback : std::uint8_t {
  kNotAsked,
  kAsked,     ///< in vain
  kAnswered,  ///< and what it said is the outcome
};

/// The engine under test with its fallback (the first), and the reference.
/// Plain values, so that a process can hand it to another.
struct Judgement {
  Truth truth = Truth::kUnknown;
  bool has_room = false;  ///< what was planted
  Claim first = Claim::kNone;
  Claim reference = Claim::kNone;
  ProblemClass problem_class = ProblemClass::kBorder;
  bool first_against_truth = false;
  bool reference_against_truth = false;
  // What is wrong with each, null if nothing is known against it. A literal, which stands
  // in the same place in a process that was forked.
  const char* first_refutation = nullptr;
  const char* reference_refutation = nullptr;
  bool against_each_other = false;
  bool first_left_room = false;  ///< open, where what was planted has room
  bool reference_left_room = false;
  Fallback fallback = Fallback::kNotAsked;
  /// Without the fallback the problem would have been left open; else it brought an
  /// objective that is nearer to its bound.
  bool claim_is_of_fallback = false;
  bool both_have_objectives = false;
  /// |difference| / max(1, |objective|), where both have one.
  double difference = 0;
  double first_objective = 0;
  double reference_objective = 0;
  // Farther from its own proven bound than the default tolerances allow, so that the
  // heading of the result says so.
  bool first_has_gap = false;
  bool reference_has_gap = false;
  // Seconds inside the engines.
  double first_seconds = 0;
  double fallback_seconds = 0;
  double reference_seconds = 0;

  /// |first objective - planted optimum| / max(1, |optimum|), where there is one.
  bool optimum_is_known = false;
  double first_from_optimum = 0;

  /// What objectives must agree to.
  static constexpr double kAgreement = 1e-6;
  bool disagree() const { return both_have_objectives && !(difference <= kAgreement); }
  /// Said by whoever it is, so nobody is misled; or the reference is the worse one, whose
  /// bound the first does not pass.
  bool disagree_with_gap() const {
    return disagree() &&
           (first_has_gap || reference_has_gap || reference_objective < first_objective);
  }
  bool disagree_silently() const { return disagree() && !disagree_with_gap(); }
  bool misses_optimum() const { return optimum_is_known && !(first_from_optimum <= kAgreement); }
  bool misses_optimum_silently() const { return misses_optimum() && !first_has_gap; }
  bool fell_back() const { return fallback != Fallback::kNotAsked; }
  bool fallback_helped() const { return fallback == Fallback::kAnswered && first != Claim::kNone; }
  /// Something that no engine may do.
  bool wrong() const {
    return first_against_truth || reference_against_truth || against_each_other ||
           disagree_silently() || misses_optimum_silently();
  }
};

Judgement judge(const EngineProblem& drawn, const Outcome& first, Fallback fallback,
                const Outcome& reference);

/// In a line, for people.
std::string text_of(const Judgement& judgement);

}  // namespace sdpsol::testing
