#include "tests/engines/liar_trial.h"

#include <Eigen/Core>
#include <Eigen/Eigenvalues>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "solver/check/evaluate.h"
#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"
#include "solver/decide/decide.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "tests/engines/exact_truth.h"
#include "tests/engines/refutation.h"

namespace sdpsol::testing {
namespace {

constexpr std::size_t kMaxTexts = 20;

Eigen::MatrixXd rounded(const RationalMatrix& exact) {
  const auto n = static_cast<Eigen::Index>(exact.size());
  Eigen::MatrixXd m(n, n);
  for (Eigen::Index i = 0; i < n; ++i) {
    for (Eigen::Index j = i; j < n; ++j) {
      m(i, j) = m(j, i) =
          exact.at(static_cast<std::size_t>(i), static_cast<std::size_t>(j)).get_d();
    }
  }
  return m;
}

/// Factors of planted weights; those of equations are the weights themselves.
std::vector<Multiplier> multipliers_of(const EngineProblem& drawn) {
  std::vector<Multiplier> multipliers;
  for (const ExactWeight& y : drawn.weights) {
    const Eigen::MatrixXd weight = rounded(y.weight);
    if (drawn.problem.blocks[y.block].sense == Sense::kEqual) {
      multipliers.push_back({y.block, weight});
      continue;
    }
    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> eigen(weight);
    const double least = 1e-13 * eigen.eigenvalues().maxCoeff();
    Eigen::MatrixXd factor(weight.rows(), 0);
    for (Eigen::Index i = 0; i < weight.rows(); ++i) {
      const double value = eigen.eigenvalues()[i];
      if (!(value > least)) continue;
      factor.conservativeResize(Eigen::NoChange, factor.cols() + 1);
      factor.rightCols(1) = std::sqrt(value) * eigen.eigenvectors().col(i);
    }
    if (factor.cols() > 0) multipliers.push_back({y.block, std::move(factor)});
  }
  return multipliers;
}

Outcome outcome_of(Disproof disproof) {
  Outcome outcome;
  outcome.certificate.resize(1);
  switch (disproof) {
    case Disproof::kInfeasible:
      outcome.verdict = Verdict::kInfeasible;
      break;
    case Disproof::kEmptyBox:
      outcome.reason = "no point with |v| <= BIGM";
      break;
    case Disproof::kBorderline:
      outcome.reason = "borderline: no point has more room than 4.4e-6";
      break;
    case Disproof::kNone:
      outcome.certificate.clear();
      break;
  }
  return outcome;
}

}  // namespace

void LiarTally::add_wrong(const std::string& text) {
  ++all_wrong;
  if (wrong.size() < kMaxTexts) wrong.push_back(text);
}

void LiarTally::print(std::ostream& out) const {
  out << problems << " problems, " << trials << " liars at them:\n";
  for (std::size_t c = 0; c < claims.size(); ++c) {
    out << "  " << claims[c] << " " << name_of(static_cast<Claim>(c)) << "\n";
  }
  out << points << " points offered to the checker, " << points_accepted << " accepted\n"
      << weights << " sets of weights, " << weights_accepted << " accepted, " << bounds
      << " finite bounds\n"
      << all_wrong << " wrong\n";
  for (const std::string& text : wrong) out << "wrong " << text << "\n";
}

LiarTrial::LiarTrial(std::uint32_t seed, LiarTally& tally)
    : seed_(seed), tally_(tally), honest_(make_cones_engine()), reference_(make_csdp_engine()) {}

void LiarTrial::examine(std::uint64_t index, int lies) {
  std::seed_seq numbers{seed_, static_cast<std::uint32_t>(index),
                        static_cast<std::uint32_t>(index >> 32), 4711U};
  random_.seed(numbers);
  ++tally_.problems;
  const EngineProblem drawn = engine_problem(seed_, index);
  // Answers to another problem, the same in every run: a liar without a lie notes them.
  before_ = {};
  Liar noting(*honest_, {}, before_, 1);
  decide(engine_problem(seed_, index + 1).problem, noting, {});
  const std::string where =
      std::to_string(index) + " (" + engine_families()[family_of(index)] + "): ";
  for (int i = 0; i < lies; ++i) hear_liar(drawn, where);
  offer_points(drawn, where);
  offer_weights(drawn, where);
}

void LiarTrial::hear_liar(const EngineProblem& drawn, const std::string& where) {
  const Lie lie = random_lie(random_);
  const auto company = static_cast<Company>(uniform(0, static_cast<int>(kCompanies) - 1));
  Engine& honest = uniform(0, 3) == 0 ? *reference_ : *honest_;
  Liar liar(honest, lie, before_, static_cast<unsigned>(random_()));
  Outcome outcome;
  switch (company) {
    case Company::kAlone:
      outcome = decide(drawn.problem, liar, {});
      break;
    case Company::kFirst:
      outcome = decide_with_fallback(drawn.problem, liar, *reference_, {});
      break;
    case Company::kFallback:
      outcome = decide_with_fallback(drawn.problem, *honest_, liar, {});
      break;
  }
  ++tally_.trials;
  ++tally_.claims[static_cast<std::size_t>(claim_of(outcome))];
  if (const char* wrong = refutation(drawn, outcome)) {
    constexpr const char* kWho[] = {"alone", "first", "fallback"};
    tally_.add_wrong(where + wrong + ", said by a liar (" + text_of(lie) + ", " +
                     kWho[static_cast<std::size_t>(company)] + ")");
  }
}

void LiarTrial::offer_point(const EngineProblem& drawn, const std::vector<double>& point,
                            const std::string& where) {
  const bool for_verdict = uniform(0, 1) == 0;
  const FeasibleCheck check = check_point(
      drawn.problem, point, for_verdict ? RoomAsked::kForVerdict : RoomAsked::kBeyondRounding);
  ++tally_.points;
  if (check.result != PointResult::kProven) return;
  ++tally_.points_accepted;
  const char* wrong = nullptr;
  if (drawn.truth == Truth::kInfeasible || drawn.truth == Truth::kOutsideBox) {
    wrong = "accepted, where there is none";
  } else if (check.distance.empty() ? !satisfies(drawn.problem, rational(check.point))
                                    : !satisfied_within(drawn.problem, check.point, check.distance,
                                                        for_verdict ? kRoom : 0)) {
    wrong = "accepted, and is none";
  }
  if (wrong != nullptr) tally_.add_wrong(where + "a point " + wrong);
}

/// Around a planted point; in problems without one, around what an honest engine has.
void LiarTrial::offer_points(const EngineProblem& drawn, const std::string& where) {
  std::vector<double> near = drawn.point;
  if (near.empty()) near = decide(drawn.problem, *honest_, {}).point;
  near.resize(static_cast<std::size_t>(drawn.problem.unknowns), 0.0);
  offer_point(drawn, near, where);
  for (const double by : {1e-1, 1e-3, 1e-5, 1e-7, 1e-9, 1e-11, 1e-13, 1e-15}) {
    std::vector<double> moved = near;
    for (double& v : moved) v += by * (1 + std::fabs(v)) * normal();
    offer_point(drawn, moved, where);
  }
  if (near.empty()) return;
  const auto chosen = static_cast<std::size_t>(uniform(0, drawn.problem.unknowns - 1));
  for (const double odd :
       {drawn.problem.big_m, std::nextafter(drawn.problem.big_m, HUGE_VAL), -HUGE_VAL, kNan, 1e300,
        5e-324, std::nextafter(near[chosen], HUGE_VAL), std::nextafter(near[chosen], -HUGE_VAL)}) {
    std::vector<double> moved = near;
    moved[chosen] = odd;
    offer_point(drawn, moved, where);
  }
}

void LiarTrial::offer_weights(const EngineProblem& drawn, const std::string& where) {
  const std::vector<Multiplier> planted = multipliers_of(drawn);
  if (planted.empty()) return;
  const auto offer = [&](const std::vector<Multiplier>& offered) {
    ++tally_.weights;
    const Outcome outcome = outcome_of(disprove(drawn.problem, offered));
    tally_.weights_accepted += claim_of(outcome) == Claim::kNone ? 0U : 1U;
    if (const char* wrong = refutation(drawn, outcome)) {
      tally_.add_wrong(where + "weights accepted: " + wrong);
    }
    if (!drawn.problem.objective) return;
    const double bound = proven_bound(drawn.problem, offered);
    tally_.bounds += std::isfinite(bound) ? 1U : 0U;
    if (drawn.optimum && !(bound >= *drawn.optimum)) {
      tally_.add_wrong(where + "a bound is better than the optimum");
    }
  };
  const auto offer_changed = [&](auto change) {
    std::vector<Multiplier> changed = planted;
    for (Multiplier& y : changed) y.factor = y.factor.unaryExpr(change);
    offer(changed);
  };
  offer(planted);
  for (const double by : {0.0, -1.0, 1e300, 1e-300, 1e30, 1e-30, 2.0}) {
    offer_changed([&](double x) { return by * x; });
  }
  for (const double by : {1e-1, 1e-3, 1e-5, 1e-7, 1e-9, 1e-11, 1e-13, 1e-15}) {
    offer_changed([&](double x) { return x * (1 + by * normal()); });
    offer_changed([&](double x) { return x + by * normal(); });
  }
  offer_changed([&](double x) { return uniform(0, 3) == 0 ? HUGE_VAL : x; });
  offer_changed([&](double x) { return uniform(0, 3) == 0 ? std::nan("") : x; });
  std::vector<Multiplier> fewer = planted;
  fewer.erase(fewer.begin() + uniform(0, static_cast<int>(fewer.size()) - 1));
  offer(fewer);
  // Shapes that no weight of their block has.
  for (const Eigen::Index columns : {0, 2, 5}) {
    std::vector<Multiplier> odd = planted;
    Multiplier& y = odd[static_cast<std::size_t>(uniform(0, static_cast<int>(odd.size()) - 1))];
    const Eigen::MatrixXd whole = y.factor;
    y.factor = Eigen::MatrixXd::NullaryExpr(
        whole.rows(), columns,
        [&](Eigen::Index i, Eigen::Index) { return whole(i, 0) * (1 + normal()); });
    offer(odd);
    y.factor = Eigen::MatrixXd::Ones(whole.rows() + 1, 1);
    offer(odd);
  }
}

}  // namespace sdpsol::testing
