// A slice of the stream for both engines, and engines that must not get away with it.
// engines_soak runs as much of the stream as one likes.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include "solver/decide/test_lying_engine.h"
#include "solver/engine/csdp_engine.h"
#include "tests/engines/contest.h"
#include "tests/engines/reordered_engine.h"
#include "tests/engines/tally.h"
#include "tests/verdicts/many.h"

namespace sdpsol::testing {
namespace {

constexpr std::uint32_t kSeed = 1;

std::string place(std::uint64_t index) {
  return std::string(engine_families()[family_of(index)]) + ": engines_soak --seed " +
         std::to_string(kSeed) + " --from " + std::to_string(index) + " --count 1";
}

TEST(Engines, AgreeWithEachOtherAndWithWhatWasPlanted) {
  Contest contest;
  Tally tally;
  int helped = 0;
  const int count = many(300);
  for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(count); ++i) {
    const std::uint64_t index = i * kStepThroughFamilies;
    const Judgement judgement = contest.of(engine_problem(kSeed, index));
    EXPECT_FALSE(judgement.wrong()) << place(index) << "\n" << text_of(judgement);
    EXPECT_FALSE(judgement.first_left_room) << place(index) << "\n" << text_of(judgement);
    helped += judgement.fallback_helped() ? 1 : 0;
    tally.add(index, judgement);
  }
  EXPECT_LE(helped, at_most(10, count));
  if (HasFailure()) tally.print_table(std::cout);
}

TEST(Engines, InAnotherOrderTheReferenceStillAgreesWithItself) {
  Contest contest(std::make_unique<ReorderedEngine>(make_csdp_engine()));
  for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(many(60)); ++i) {
    const std::uint64_t index = i * kStepThroughFamilies;
    const Judgement judgement = contest.of(engine_problem(kSeed, index));
    EXPECT_FALSE(judgement.wrong()) << place(index) << "\n" << text_of(judgement);
  }
}

/// An engine that is a liar and owns the engine that it asks.
class OwningLiar final : public Engine {
 public:
  OwningLiar() : honest_(make_csdp_engine()), liar_(*honest_, 1) {}
  std::string_view name() const override { return liar_.name(); }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    return liar_.solve(program, limits, observer);
  }

 private:
  std::unique_ptr<Engine> honest_;
  LyingEngine liar_;
};

TEST(Engines, OneThatLiesIsNeverBelievedAndShowsInTheFallbacks) {
  Contest contest(std::make_unique<OwningLiar>());
  int helped = 0;
  const int count = many(60);
  for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(count); ++i) {
    const std::uint64_t index = i * kStepThroughFamilies;
    const Judgement judgement = contest.of(engine_problem(kSeed, index));
    EXPECT_FALSE(judgement.first_against_truth) << place(index) << "\n" << text_of(judgement);
    EXPECT_FALSE(judgement.against_each_other) << place(index) << "\n" << text_of(judgement);
    helped += judgement.fallback_helped() ? 1 : 0;
  }
  // Ten times what the bound on fallbacks allows, and more.
  EXPECT_GT(helped, count / 10);
}

/// Stops where the objective is right to three digits, and calls that the optimum.
class HastyEngine final : public Engine {
 public:
  std::string_view name() const override { return "hasty"; }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    Limits loose = limits;
    loose.accuracy = 1e-3;
    return patient_->solve(program, loose, observer);
  }

 private:
  std::unique_ptr<Engine> patient_ = make_csdp_engine();
};

TEST(Engines, OneThatStopsEarlyShowsInItsObjectivesOrInTheFallbacks) {
  Contest contest(std::make_unique<HastyEngine>());
  int objectives = 0;
  int apart = 0;
  for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(many(60)); ++i) {
    const Judgement judgement = contest.of(engine_problem(kSeed, i * kStepThroughFamilies));
    objectives += judgement.both_have_objectives ? 1 : 0;
    // A gap to the bound calls for the fallback.
    apart += judgement.disagree() || judgement.fallback_helped() ? 1 : 0;
  }
  EXPECT_GT(apart, objectives / 4);
}

}  // namespace
}  // namespace sdpsol::testing
