// Random linear definitions of every kind against exact arithmetic: no verdict,
// no reason that is a claim and no bound may be wrong, and few may be left open.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "solver/check/evaluate.h"
#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"
#include "tests/verdicts/many.h"
#include "tests/verdicts/random_definitions.h"
#include "tests/verdicts/required_verdict.h"

namespace sdpsol::testing {
namespace {

constexpr int kCount = many(700);  // per kind; a third of them have an objective

Problem problem_of(const std::string& text) {
  const Source source("test.def", text);
  Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  if (!model) throw std::runtime_error(diagnostics.render(source) + text);
  return build_problem(*model);
}

/// What the doubles say that were read.
RationalProgram rows_of(const Problem& problem) {
  RationalProgram program{static_cast<std::size_t>(problem.unknowns), {}};
  for (const Block& block : problem.blocks) {
    RationalRow row{std::vector<Rational>(program.unknowns), 0, block.sense};
    for (const AffineTerm& t : block.terms) {
      if (t.unknown == kConstant) {
        row.constant = t.value;
      } else {
        row.coefficients[static_cast<std::size_t>(t.unknown)] = t.value;
      }
    }
    program.rows.push_back(std::move(row));
  }
  return program;
}

/// One definition, its outcome and its truths.
class Trial {
 public:
  Trial(LinearDefinition definition, Engine& engine)
      : definition_(std::move(definition)),
        problem_(problem_of(definition_.text)),
        outcome_(decide(problem_, engine, {})) {}

  const std::string& text() const { return definition_.text; }

  /// That no point is in the box, or has more room, is an answer as well.
  bool is_open() const {
    return outcome_.verdict == Verdict::kUndetermined && outcome_.reason != kOutsideBox;
  }

  bool has_room(const Rational& share) const {
    return has_exact_solution(with_box(with_room(definition_.paper, share), definition_.big_m));
  }

  /// A point with a good room is there to be found. Equations that follow from each
  /// other only on paper, and terms that were added up from large ones, may hide it.
  bool must_be_decided() const {
    const auto& rows = definition_.paper.rows;
    const auto equations = std::count_if(
        rows.begin(), rows.end(), [](const RationalRow& r) { return r.sense == Sense::kEqual; });
    return definition_.kind != LinearKind::kSums && equations <= 1 && has_room(Rational(1, 10000));
  }

  /// Every claim of the outcome holds for what was written and for what was read.
  void expect_true_claims() const {
    const RationalProgram paper = with_box(definition_.paper, definition_.big_m);
    const RationalProgram read = with_box(rows_of(problem_), definition_.big_m);
    if (outcome_.verdict == Verdict::kFeasible) {
      EXPECT_TRUE(has_exact_solution(paper)) << "on paper\n" << text();
      EXPECT_TRUE(has_exact_solution(read)) << "as read\n" << text();
    } else if (outcome_.verdict == Verdict::kInfeasible) {
      // The box takes no part in a contradiction, but for what reading has rounded.
      EXPECT_FALSE(has_exact_solution(definition_.paper)) << "on paper\n" << text();
      EXPECT_FALSE(has_exact_solution(read)) << "as read\n" << text();
    } else if (outcome_.reason == kOutsideBox) {
      EXPECT_FALSE(has_exact_solution(paper)) << "on paper\n" << text();
      EXPECT_FALSE(has_exact_solution(read)) << "as read\n" << text();
    } else if (outcome_.reason == kBorderline) {
      EXPECT_FALSE(has_room(Rational(kRoom))) << text();
    }
  }

  bool has_objective() const { return outcome_.objective.has_value(); }

  /// @return how far the objective stays behind its optimum, of 1 + |optimum|.
  double expect_true_objective() const {
    std::vector<Rational> cost;
    for (const double c : problem_.objective->cost) cost.emplace_back(c);
    const RationalOptimum optimum =
        maximise_exactly(with_box(rows_of(problem_), definition_.big_m), cost);
    EXPECT_EQ(optimum.kind, RationalOptimum::Kind::kReached) << text();
    if (std::isfinite(*outcome_.bound)) {
      EXPECT_GE(Rational(*outcome_.bound), optimum.value) << text();
    }
    // A point that was moved onto equations is off by its rounding.
    const Rational value(*outcome_.objective);
    const Rational size = 1 + abs(optimum.value);
    EXPECT_LE(value, optimum.value + size / 1000000000) << text();
    return Rational((optimum.value - value) / size).get_d();
  }

 private:
  LinearDefinition definition_;
  Problem problem_;
  Outcome outcome_;
};

/// What may be left open, and how many objectives may stay behind their optimum by
/// more than 1e-6, in thousandths.
struct Share {
  LinearKind kind;
  int open;
  int missed;
};

void PrintTo(const Share& share, std::ostream* out) {
  *out << name_of(share.kind);
}

class RandomLinear : public ::testing::TestWithParam<Share> {
 protected:
  std::unique_ptr<Engine> engine_ = make_csdp_engine();
};

TEST_P(RandomLinear, ClaimsAreTrueAndFewAreOpen) {
  RandomDefinitions random(500 + static_cast<unsigned>(GetParam().kind));
  int open = 0;
  int objectives = 0;
  int missed = 0;
  for (int round = 0; round < kCount; ++round) {
    const Trial trial(random.draw(GetParam().kind, round % 3 == 0), *engine_);
    trial.expect_true_claims();
    if (trial.is_open()) {
      ++open;
      EXPECT_FALSE(trial.must_be_decided()) << trial.text();
    }
    if (!trial.has_objective()) continue;
    ++objectives;
    missed += trial.expect_true_objective() > 1e-6 ? 1 : 0;
  }
  std::cout << name_of(GetParam().kind) << ": " << open << " of " << kCount << " open, " << missed
            << " of " << objectives << " objectives missed\n";
  EXPECT_LE(open, at_most(GetParam().open, kCount));
  EXPECT_LE(missed, at_most(GetParam().missed, objectives));
}

// Measured: none, none, none, 23, 91, 41, 126, 13, 53, 123 open; up to 28 missed, and
// 209 of the badly scaled ones.
INSTANTIATE_TEST_SUITE_P(Kinds, RandomLinear,
                         ::testing::Values(
                             // Every border of small integers is exact, and exactly proven.
                             Share{LinearKind::kIntegers, 0, 50}, Share{LinearKind::kCones, 0, 50},
                             Share{LinearKind::kUnused, 0, 50},
                             // Rows that meet in one point on paper pass it by in doubles.
                             Share{LinearKind::kDecimals, 40, 50},
                             Share{LinearKind::kDependent, 120, 50},
                             Share{LinearKind::kEquations, 60, 50},
                             Share{LinearKind::kDuplicated, 160, 50},
                             Share{LinearKind::kSums, 160, 50},
                             // Objectives that only a box far away limits.
                             Share{LinearKind::kBadlyScaled, 40, 260},
                             // Equations outside the box, for which no reason is claimed.
                             Share{LinearKind::kSmallBox, 80, 50}),
                         [](const auto& suite) {
                           std::string name = name_of(suite.param.kind);
                           std::replace(name.begin(), name.end(), ' ', '_');
                           return name;
                         });

}  // namespace
}  // namespace sdpsol::testing
