// Random grasps with planted answers, asked on the whole road: driver, shell,
// command, result file.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "tests/verdicts/many.h"
#include "tests/verdicts/random_grasp.h"
#include "unit/sdpsol_wrapper.h"

namespace sdpsol::testing {
namespace {

/// A driver with files of its own, which go when it goes.
class Solver {
 public:
  Solver()
      : folder_(make_folder()),
        wrapper_(SDPSOL_BIN_DIR "/sdpsol", folder_ + "/in", folder_ + "/out") {}
  Solver(const Solver&) = delete;
  Solver& operator=(const Solver&) = delete;
  ~Solver() { std::filesystem::remove_all(folder_); }

  /// "1", "0", or why there is no verdict.
  std::string exists(const RandomGrasp& grasp) {
    const float answer =
        wrapper_.internalForceExists(grasp.base, grasp.types, grasp.friction, grasp.bounds);
    if (wrapper_.lastResult.errorCode != 0) {
      return "error code " + std::to_string(wrapper_.lastResult.errorCode);
    }
    if (wrapper_.resultText.find("FEASIBILITY CANNOT BE DETERMINED") != std::string::npos) {
      return wrapper_.resultText;
    }
    return answer == 1.0F ? "1" : "0";
  }

 private:
  static std::string make_folder() {
    std::string name = std::filesystem::temp_directory_path() / "grasp_verdict.XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    return name;
  }

  std::string folder_;
  sdpsol_wrapper wrapper_;
};

TEST(GraspVerdicts, PlantedForceIsFoundInEveryOfManyRandomGrasps) {
  Solver solver;
  std::mt19937 random(20260101);
  for (int i = 0; i < many(150); ++i) {
    const RandomGrasp grasp = grasp_with_internal_force(random, {.contacts = 2 + i % 7});
    EXPECT_EQ(solver.exists(grasp), "1") << "grasp " << i;
  }
}

TEST(GraspVerdicts, PlantedSeparatingTwistIsFoundInEveryOfManyRandomGrasps) {
  Solver solver;
  std::mt19937 random(20260102);
  for (int i = 0; i < many(150); ++i) {
    const RandomGrasp grasp = grasp_without_internal_force(random, {.contacts = 2 + i % 7});
    EXPECT_EQ(solver.exists(grasp), "0") << "grasp " << i;
  }
}

/// One grasp in other units: the same numbers of the generator, so the same grasp.
class OneVerdict : public ::testing::TestWithParam<bool> {
 protected:
  std::string verdict(unsigned seed, const GraspSize& size) {
    std::mt19937 random(seed);
    return solver_.exists(GetParam() ? grasp_with_internal_force(random, size)
                                     : grasp_without_internal_force(random, size));
  }
  const char* truth() const { return GetParam() ? "1" : "0"; }
  Solver solver_;
};

TEST_P(OneVerdict, InMetresAndMillimetres) {
  for (unsigned seed = 1; seed <= static_cast<unsigned>(many(20)); ++seed) {
    const int contacts = 2 + static_cast<int>(seed % 5);
    EXPECT_EQ(verdict(seed, {.contacts = contacts, .length = 1}), truth()) << seed;
    EXPECT_EQ(verdict(seed, {.contacts = contacts, .length = 1000}), truth()) << seed;
  }
}

TEST_P(OneVerdict, WithBoundsOfTenAndOfAMillion) {
  for (unsigned seed = 1; seed <= static_cast<unsigned>(many(20)); ++seed) {
    const int contacts = 2 + static_cast<int>(seed % 5);
    EXPECT_EQ(verdict(seed, {.contacts = contacts, .largest_force = 10}), truth()) << seed;
    EXPECT_EQ(verdict(seed, {.contacts = contacts, .largest_force = 1e6}), truth()) << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Planted, OneVerdict, ::testing::Bool(), [](const auto& suite) {
  return suite.param ? std::string("Force") : std::string("Twist");
});

}  // namespace
}  // namespace sdpsol::testing
