// Required verdicts of hand-written definitions, from text to verdict. Each line
// says why the verdict is the required one.
#include <gtest/gtest.h>

#include <string>

#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

constexpr const char* kBorderline = "borderline: no point has more room than 4.4e-6";
constexpr const char* kNoise = "decided by coefficients at noise level";
constexpr const char* kOutsideBox = "no point with |v| <= BIGM";

struct Required {
  const char* name;
  const char* text;
  Verdict verdict;
  const char* reason;  ///< compared with kUndetermined only
};

void PrintTo(const Required& required, std::ostream* out) {
  *out << required.name;
}

Outcome decide_text(const std::string& text) {
  const Source source("test.def", text);
  Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  if (!model) {
    ADD_FAILURE() << diagnostics.render(source);
    return {};
  }
  const auto engine = make_csdp_engine();
  return decide(build_problem(*model), *engine,
                {.max_iterations = model->parameters.max_iterations});
}

class RequiredVerdict : public ::testing::TestWithParam<Required> {};

TEST_P(RequiredVerdict, IsGiven) {
  const Outcome outcome = decide_text(GetParam().text);
  EXPECT_EQ(outcome.verdict, GetParam().verdict) << outcome.reason;
  if (GetParam().verdict == Verdict::kUndetermined) {
    EXPECT_EQ(outcome.reason, GetParam().reason);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Definitions, RequiredVerdict,
    ::testing::Values(
        // Added up they say 0 > 0.
        Required{"BothSigns", "variable x; x>0; x<0;", Verdict::kInfeasible, ""},
        Required{"ZeroMatrix", "[0]>0;", Verdict::kInfeasible, ""},
        // One strict inequality is enough for 0 > 0.
        Required{"StrictAgainstNonStrict", "variable x; x>0; x<=0;", Verdict::kInfeasible, ""},
        // x = 0 satisfies both.
        Required{"BothSignsNonStrict", "variable x; x>=0; x<=0;", Verdict::kFeasible, ""},
        // x = y = 1 satisfies all three.
        Required{"ImpliedEquation", "variable x; variable y; x-y>=0; y-x>=0; x>=1;",
                 Verdict::kFeasible, ""},
        // Six digits cannot tell 1 from 1.000001.
        Required{"GapOfTheSeventhDigit", "variable x; x>1; x<1.000001;", Verdict::kUndetermined,
                 kBorderline},
        // 0.1 + 0.2 - 0.3 is 5.6e-17 in doubles and 0 on paper.
        Required{"CancelledCoefficient", "variable x; 0.1*x+0.2*x-0.3*x>0;", Verdict::kUndetermined,
                 kNoise},
        // 1e12 + 0.1 - 1e12 is 0.0999756 in doubles and 0.1 on paper.
        Required{"CancelledConstant", "variable x; x>1e12+0.1-1e12; x<0.1;", Verdict::kUndetermined,
                 kBorderline},
        // The default BIGM is 15000.
        Required{"BeyondTheBox", "variable x; x>20000;", Verdict::kUndetermined, kOutsideBox},
        Required{"InsideALargerBox", "BIGM=30000; variable x; x>20000;", Verdict::kFeasible, ""},
        // Feasible if 1e-13 is meant, 0 > 0 if it is noise.
        Required{"NoiseCoefficient", "variable x; 1e-13*x>0; x<1;", Verdict::kUndetermined, kNoise},
        // What builders write around it must not matter.
        Required{"BlockMatrix",
                 "variable x; variable y; P0=[x,0,y;0,x,y;y,y,x]; P1=x; "
                 "[P0,zeros(3,1);zeros(1,3),P1]-[1*eye(3),zeros(3,1);zeros(1,3),1]>0; x<10;",
                 Verdict::kFeasible, ""}),
    [](const auto& suite) { return std::string(suite.param.name); });

}  // namespace
}  // namespace sdpsol
