// What becomes of a liar's answers: whatever verdict comes out must be true.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "solver/engine/engine.h"
#include "tests/engines/engine_problems.h"
#include "tests/engines/judge.h"
#include "tests/engines/liar.h"

namespace sdpsol::testing {

/// Whom the liar works with.
enum class Company { kAlone, kFirst, kFallback };
inline constexpr std::size_t kCompanies = 3;

/// What was tried and what came of it.
struct LiarTally {
  std::uint64_t problems = 0;
  std::uint64_t trials = 0;               ///< of liars
  std::array<std::uint64_t, 5> claims{};  ///< of these, by Claim
  std::uint64_t points = 0;               ///< handed to the checker itself
  std::uint64_t points_accepted = 0;
  std::uint64_t weights = 0;
  std::uint64_t weights_accepted = 0;
  std::uint64_t bounds = 0;        ///< finite ones
  std::vector<std::string> wrong;  ///< the first few
  std::uint64_t all_wrong = 0;

  void add_wrong(const std::string& text);
  void print(std::ostream& out) const;
};

class LiarTrial {
 public:
  LiarTrial(std::uint32_t seed, LiarTally& tally);

  /// `lies` liars at the problem of this number, and the checker itself with points and
  /// weights that are nearly right.
  void examine(std::uint64_t index, int lies);

 private:
  void hear_liar(const EngineProblem& drawn, const std::string& where);
  void offer_points(const EngineProblem& drawn, const std::string& where);
  void offer_point(const EngineProblem& drawn, const std::vector<double>& point,
                   const std::string& where);
  void offer_weights(const EngineProblem& drawn, const std::string& where);
  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  double normal() { return std::normal_distribution<double>()(random_); }

  std::uint32_t seed_;
  LiarTally& tally_;
  std::mt19937 random_;
  std::unique_ptr<Engine> honest_;
  std::unique_ptr<Engine> reference_;
  Iterate before_;
};

}  // namespace sdpsol::testing
