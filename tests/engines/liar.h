// An engine that lies by a plan: each of its answers is that of an honest engine, with one
// thing done to its point, one to its multipliers and one to what it says of them.
#pragma once

#include <limits>
#include <random>
#include <string>
#include <utility>

#include "solver/engine/engine.h"

namespace sdpsol::testing {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

enum class PointLie {
  kNone,
  kZero,
  kNotANumber,
  kInfinite,
  kHuge,
  kDenormal,
  kFar,   ///< a million times as far
  kNear,  ///< off by 1e-1 to 1e-12
  kMirrored,
  kOfAnother,  ///< of the program before
  kOfRelaxed,  ///< of the program with one cone a little wider
  kRandom,
  kShort,
  kLong,
};
inline constexpr int kPointLies = 14;

enum class WeightLie {
  kNone,
  kZero,
  kNotANumber,
  kInfinite,
  kHuge,
  kTiny,
  kNegated,
  kNear,        ///< off by 1e-1 to 1e-12
  kIndefinite,  ///< by 1e-16 to 1e-6 of the largest entry
  kOneEntry,
  kAsymmetric,
  kOfAnother,   ///< of the program before
  kOfNarrowed,  ///< of the program with one cone a little narrower
  kOneCone,     ///< the others 0
  kRandom,
  kShuffled,
  kShort,
  kLong,
};
inline constexpr int kWeightLies = 18;

/// What it says of its own success.
enum class Boast { kNone, kOptimum, kPoint, kContradiction, kUnbounded, kNonsense };
inline constexpr int kBoasts = 6;

/// In which of its runs.
enum class When { kAlways, kOfMargins, kOfObjectives, kFirst, kLater };
inline constexpr int kWhens = 5;

struct Lie {
  PointLie point = PointLie::kNone;
  WeightLie weights = WeightLie::kNone;
  Boast boast = Boast::kNone;
  When when = When::kAlways;
};

Lie random_lie(std::mt19937& random);
std::string text_of(const Lie& lie);

class Liar final : public Engine {
 public:
  /// @param before answers to other programs; the present ones are left there.
  Liar(Engine& honest, const Lie& lie, Iterate& before, unsigned seed)
      : honest_(honest), lie_(lie), before_(before), random_(seed) {}

  std::string_view name() const override { return "liar"; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override;

 private:
  bool is_time(const ConeProgram& program) const;
  Iterate lie_about(const ConeProgram& program, const Iterate& truth);
  void change_point(const ConeProgram& program, std::vector<double>& point);
  void change_weights(const ConeProgram& program, std::vector<double>& weights);
  void spoil_one_cone(const ConeProgram& program, std::vector<double>& weights);
  StopReason boast(Iterate& iterate);
  /// The answer to the program with one cone wider or narrower by 1e-1 to 1e-10.
  Iterate answer_beside(const ConeProgram& program, double sign);
  double small(int least, int most);
  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  double normal() { return std::normal_distribution<double>()(random_); }

  Engine& honest_;
  Lie lie_;
  Iterate& before_;
  std::mt19937 random_;
  int runs_ = 0;
};

}  // namespace sdpsol::testing
