// No problem may pass both claims. Whatever points and multipliers there are for a
// problem - the engine's on its way, planted ones, changed ones, those of other
// problems, random ones - the checker is asked about all of them: a point that
// proves it feasible and multipliers that prove it is not must never meet, and no
// proven bound may lie below a proven point's objective.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"
#include "solver/decide/optimum.h"
#include "solver/decide/presolve.h"
#include "solver/decide/test_random_problems.h"
#include "solver/engine/csdp_engine.h"
#include "tests/verdicts/many.h"
#include "tests/verdicts/random_matrices.h"

namespace sdpsol::testing {
namespace {

struct Evidence {
  std::vector<std::vector<double>> points;
  std::vector<std::vector<Multiplier>> multipliers;
};

/// What the checker makes of all evidence for one problem.
struct Claims {
  bool feasible = false;
  bool infeasible = false;
  bool empty_box = false;
  bool borderline = false;
  double best = -std::numeric_limits<double>::infinity();  ///< objective at a proven point
  double bound = std::numeric_limits<double>::infinity();
};

class BothClaims : public ::testing::Test {
 protected:
  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  double normal() { return std::normal_distribution<double>()(random_); }

  /// The engine's last iterates for margin and objective.
  void ask_engine(const Problem& problem, Goal goal, Evidence& evidence) {
    const Selection selection = select_conditions(problem);
    const Scaling scaling = scale_by_constants(problem);
    const Program program(problem, selection, scaling, goal);
    if (!program.has_unknowns()) return;
    const Observer observer = [&](const Iterate& iterate) {
      if (iterate.iteration % 4 == 0) take(program, iterate, evidence);
      return false;
    };
    take(program, engine_->solve(program.cones(), {}, observer).last, evidence);
  }

  static void take(const Program& program, const Iterate& iterate, Evidence& evidence) {
    evidence.points.push_back(program.point(iterate));
    for (const auto keep : {Program::Keep::kActive, Program::Keep::kAll}) {
      evidence.multipliers.push_back(program.multipliers(iterate, keep));
    }
  }

  /// Something that is nearly what is there, by 1e-12 to 1e-1 of it.
  void add_changed(Evidence& evidence) {
    const std::size_t points = evidence.points.size();
    for (std::size_t i = 0; i < points; ++i) {
      std::vector<double> point = evidence.points[i];
      const double by = std::pow(10.0, -uniform(1, 12));
      for (double& v : point) v += by * (1 + std::fabs(v)) * normal();
      evidence.points.push_back(std::move(point));
    }
    const std::size_t multipliers = evidence.multipliers.size();
    for (std::size_t i = 0; i < multipliers; ++i) {
      std::vector<Multiplier> changed = evidence.multipliers[i];
      const double by = std::pow(10.0, -uniform(1, 12));
      for (Multiplier& y : changed) {
        y.factor = y.factor.unaryExpr([&](double x) { return x * (1 + by * normal()); });
      }
      if (changed.size() > 1 && uniform(0, 3) == 0) changed.pop_back();
      evidence.multipliers.push_back(std::move(changed));
    }
  }

  void add_random(const Problem& problem, Evidence& evidence) {
    const auto unknowns = static_cast<std::size_t>(problem.unknowns);
    for (int i = 0; i < 2; ++i) {
      std::vector<double> point(unknowns);
      for (double& v : point) v = uniform(-3, 3);
      evidence.points.push_back(std::move(point));
      std::vector<Multiplier> random;
      for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
        const Eigen::Index size = problem.blocks[b].size;
        if (uniform(0, 3) == 0) continue;
        const Eigen::Index rank = uniform(1, static_cast<int>(size));
        random.push_back(
            {b, Eigen::MatrixXd::NullaryExpr(size, rank, [&] { return uniform(-2, 2); })});
      }
      evidence.multipliers.push_back(std::move(random));
    }
  }

  /// Those of the problem before, as far as they fit.
  void add_previous(const Problem& problem, Evidence& evidence) const {
    for (std::vector<double> point : previous_.points) {
      point.resize(static_cast<std::size_t>(problem.unknowns));
      evidence.points.push_back(std::move(point));
    }
    for (std::vector<Multiplier> multipliers : previous_.multipliers) {
      std::erase_if(multipliers, [&](const Multiplier& y) {
        return y.block >= problem.blocks.size() || problem.blocks[y.block].size != y.factor.rows();
      });
      if (!multipliers.empty()) evidence.multipliers.push_back(std::move(multipliers));
    }
  }

  static Claims judge(const Problem& problem, const Evidence& evidence) {
    Claims claims;
    for (const std::vector<double>& point : evidence.points) {
      const FeasibleCheck check = check_point(problem, point);
      if (check.result != PointResult::kProven) continue;
      claims.feasible = true;
      double value = objective_at(problem, check.point);
      for (std::size_t k = 0; k < check.distance.size(); ++k) {
        value -= std::fabs(problem.objective->cost[k]) * check.distance[k];
      }
      claims.best = std::max(claims.best, value - 1e-12 * std::fabs(value));
    }
    for (const std::vector<Multiplier>& multipliers : evidence.multipliers) {
      const Disproof disproof = disprove(problem, multipliers);
      claims.infeasible |= disproof == Disproof::kInfeasible;
      claims.empty_box |= disproof == Disproof::kEmptyBox;
      claims.borderline |= disproof == Disproof::kBorderline;
      claims.bound = std::min(claims.bound, proven_bound(problem, multipliers));
    }
    return claims;
  }

  void examine(Problem problem, Evidence evidence) {
    problem.objective.emplace();
    for (std::int32_t k = 0; k < problem.unknowns; ++k) {
      problem.objective->cost.push_back(uniform(-3, 3));
    }
    for (const Goal goal : goals_) ask_engine(problem, goal, evidence);
    const Evidence own = evidence;
    add_changed(evidence);
    add_random(problem, evidence);
    add_previous(problem, evidence);
    previous_ = own;

    const Claims claims = judge(problem, evidence);
    feasible_ += claims.feasible ? 1 : 0;
    infeasible_ += claims.infeasible ? 1 : 0;
    EXPECT_FALSE(claims.feasible && (claims.infeasible || claims.empty_box));
    if (claims.feasible) {
      EXPECT_GE(claims.bound, claims.best);
    }
    const bool all_strict =
        std::all_of(problem.blocks.begin(), problem.blocks.end(),
                    [](const Block& block) { return block.sense == Sense::kStrict; });
    if (all_strict) {
      EXPECT_FALSE(claims.feasible && claims.borderline);
    }
  }

  std::mt19937 random_{801};
  std::unique_ptr<Engine> engine_ = make_csdp_engine();
  std::vector<Goal> goals_ = {Goal::kMargin, Goal::kObjective};
  Evidence previous_;
  int feasible_ = 0;
  int infeasible_ = 0;
};

TEST_F(BothClaims, NeverMeetOnRows) {
  RandomProblems random(802);
  constexpr int kCount = many(400);
  for (int round = 0; round < kCount; ++round) {
    const int unknowns = random.uniform(1, 4);
    SCOPED_TRACE(round);
    examine(problem_of(random.linear_rows(unknowns), unknowns), {});
  }
  EXPECT_GT(feasible_, kCount / 4);
  EXPECT_GT(infeasible_, kCount / 4);
}

TEST_F(BothClaims, NeverMeetOnMatricesOfSixDigits) {
  RandomProblems random(803);
  using Contradiction = RandomProblems::Contradiction;
  constexpr int kCount = many(150);
  for (int round = 0; round < kCount; ++round) {
    SCOPED_TRACE(round);
    Evidence evidence;
    if (round % 2 == 0) {
      Problem problem = random.with_planted_point(&evidence.points.emplace_back());
      examine(std::move(problem), std::move(evidence));
    } else {
      examine(random.with_planted_certificate(round % 4 == 1 ? Contradiction::kNegativeConstant
                                                             : Contradiction::kZeroConstant),
              {});
    }
  }
  EXPECT_GT(feasible_, kCount * 2 / 5);
  EXPECT_GT(infeasible_, kCount * 2 / 5);
}

TEST_F(BothClaims, NeverMeetOnTheBorder) {
  RandomMatrices random(804);
  // Objectives over singular matrices are more than the engine can be trusted to end with.
  goals_ = {Goal::kMargin};
  constexpr MatrixKind kKinds[] = {MatrixKind::kSingularPoint,   MatrixKind::kFaces,
                                   MatrixKind::kStrictFaces,     MatrixKind::kCertificate,
                                   MatrixKind::kZeroCertificate, MatrixKind::kWeak};
  constexpr int kCount = many(600);
  for (int round = 0; round < kCount; ++round) {
    SCOPED_TRACE(round);
    PlantedProblem planted = random.draw(kKinds[round % 6]);
    Evidence evidence;
    if (planted.feasible) evidence.points.push_back(planted.point);
    if (!planted.certificate.empty()) evidence.multipliers.push_back(planted.certificate);
    examine(std::move(planted.problem), std::move(evidence));
  }
  EXPECT_GT(feasible_, kCount / 20);
  EXPECT_GT(infeasible_, kCount / 5);
}

}  // namespace
}  // namespace sdpsol::testing
