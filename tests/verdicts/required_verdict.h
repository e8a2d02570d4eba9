// Tables of definitions and of the verdict that each must, or must not, be given.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/verdicts/decide_text.h"

namespace sdpsol::testing {

// The reasons in the words of the result file.
inline constexpr const char* kBorderline = "borderline: no point has more room than 4.4e-6";
inline constexpr const char* kNoise = "decided by coefficients at noise level";
inline constexpr const char* kOutsideBox = "no point with |v| <= BIGM";
inline constexpr const char* kOnlyNearly = "feasible only within 1e-8";
inline constexpr const char* kOutOfIterations = "the engine reached MAXITER iterations";

struct Required {
  const char* name;
  const char* text;
  Verdict verdict;
  const char* reason = nullptr;  ///< where it is not determined; compared if given
};

inline void PrintTo(const Required& required, std::ostream* out) {
  *out << required.text;
}

/// For definitions that a careful program may leave open: the verdict that would be wrong.
struct Forbidden {
  const char* name;
  const char* text;
  Verdict verdict;
};

inline void PrintTo(const Forbidden& forbidden, std::ostream* out) {
  *out << forbidden.text;
}

class RequiredVerdict : public ::testing::TestWithParam<Required> {};
class ForbiddenVerdict : public ::testing::TestWithParam<Forbidden> {};

inline void expect_required(const Required& required) {
  const Outcome outcome = decide_text(required.text);
  EXPECT_STREQ(word_for(outcome.verdict), word_for(required.verdict)) << outcome.reason;
  if (required.reason != nullptr) {
    EXPECT_EQ(outcome.reason, required.reason);
  }
}

inline void expect_not(const Forbidden& forbidden) {
  const Outcome outcome = decide_text(forbidden.text);
  EXPECT_STRNE(word_for(outcome.verdict), word_for(forbidden.verdict)) << outcome.reason;
}

/// Names a case of a table in the list of tests.
inline constexpr auto kByName = [](const auto& suite) { return std::string(suite.param.name); };

}  // namespace sdpsol::testing
