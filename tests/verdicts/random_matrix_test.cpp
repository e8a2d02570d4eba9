// Random matrix problems on the border, with a truth built in by integers: none
// may be decided against it, and of each kind as many as were measured are decided.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <string>

#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"
#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"
#include "tests/verdicts/many.h"
#include "tests/verdicts/random_matrices.h"
#include "tests/verdicts/required_verdict.h"

namespace sdpsol::testing {
namespace {

constexpr int kCount = many(500);  // per kind

struct Share {
  MatrixKind kind;
  int open;  ///< in thousandths, at most
};

void PrintTo(const Share& share, std::ostream* out) {
  *out << name_of(share.kind);
}

class RandomMatrix : public ::testing::TestWithParam<Share> {
 protected:
  std::unique_ptr<Engine> engine_ = make_csdp_engine();
};

TEST_P(RandomMatrix, IsNotDecidedAgainstWhatWasPlanted) {
  RandomMatrices random(600 + static_cast<unsigned>(GetParam().kind));
  int open = 0;
  for (int round = 0; round < kCount; ++round) {
    const PlantedProblem planted = random.draw(GetParam().kind);
    const Outcome outcome = decide(planted.problem, *engine_, {});
    const Verdict wrong = planted.feasible ? Verdict::kInfeasible : Verdict::kFeasible;
    EXPECT_STRNE(word_for(outcome.verdict), word_for(wrong)) << "round " << round;
    if (planted.feasible) {
      EXPECT_NE(outcome.reason, kOutsideBox) << "round " << round;
    }
    open += outcome.verdict == Verdict::kUndetermined ? 1 : 0;
  }
  std::cout << name_of(GetParam().kind) << ": " << open << " of " << kCount << " open\n";
  EXPECT_LE(open, at_most(GetParam().open, kCount));
}

TEST_P(RandomMatrix, IsNotProvenAgainstWhatWasPlanted) {
  RandomMatrices random(700 + static_cast<unsigned>(GetParam().kind));
  for (int round = 0; round < kCount; ++round) {
    const PlantedProblem planted = random.draw(GetParam().kind);
    if (!planted.certificate.empty()) {
      // A certificate of integers is one, whatever else the checker makes of it.
      const Disproof disproof = disprove(planted.problem, planted.certificate);
      EXPECT_NE(disproof, Disproof::kNone) << "round " << round;
    }
    if (!planted.feasible) {
      const std::vector<double> origin(static_cast<std::size_t>(planted.problem.unknowns));
      EXPECT_NE(check_point(planted.problem, origin).result, PointResult::kProven);
    }
  }
}

// Measured: 710, 406, 112, 2, 30 and 1000.
INSTANTIATE_TEST_SUITE_P(
    Kinds, RandomMatrix,
    ::testing::Values(
        // A point that is singular by chance has no neighbour to prove it by.
        Share{MatrixKind::kSingularPoint, 800},
        // Null vectors are split off where they are exact in doubles.
        Share{MatrixKind::kFaces, 480}, Share{MatrixKind::kStrictFaces, 150},
        // Certificates of low rank live on a face, where correcting may leave the cone.
        Share{MatrixKind::kCertificate, 10}, Share{MatrixKind::kZeroCertificate, 50},
        // No multipliers prove it, and points satisfy it but for as little as one likes.
        Share{MatrixKind::kWeak, 1000}),
    [](const auto& suite) { return std::string(name_of(suite.param.kind)); });

}  // namespace
}  // namespace sdpsol::testing
