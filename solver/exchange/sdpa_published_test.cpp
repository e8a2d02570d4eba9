// Files that others have written: a library of problems with published optima,
// where it is present. SDPSOL_SDPLIB names its folder, in the environment or when
// the build is configured.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "solver/exchange/test_read_sdpa.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

namespace fs = std::filesystem;

fs::path folder() {
  const char* named = std::getenv("SDPSOL_SDPLIB");
  return named != nullptr ? named : SDPSOL_SDPLIB;
}

/// As published: m unknowns, n rows in all blocks.
struct Published {
  const char* name;
  std::int32_t m;
  std::int32_t n;
};

class PublishedProblem : public ::testing::TestWithParam<Published> {};

TEST_P(PublishedProblem, IsReadWithoutAMessage) {
  const fs::path path = folder() / (std::string(GetParam().name) + ".dat-s");
  if (!fs::exists(path)) GTEST_SKIP() << "there is no " << path;
  std::ifstream file(path, std::ios::binary);
  const auto read = testing::read_sdpa_text(
      {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
  EXPECT_EQ(read.report, "");
  ASSERT_TRUE(read.model.has_value());
  EXPECT_EQ(read.model->unknown_count, GetParam().m);
  std::int32_t rows = 0;
  for (const Condition& condition : read.model->conditions) rows += condition.difference.rows;
  EXPECT_EQ(rows, GetParam().n);
}

std::string name_of(const ::testing::TestParamInfo<Published>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Files, PublishedProblem,
                         ::testing::Values(Published{"truss1", 6, 13}, Published{"truss3", 27, 31},
                                           Published{"control1", 21, 15},
                                           Published{"control2", 66, 30},
                                           Published{"theta1", 104, 50},
                                           Published{"mcp100", 100, 100},
                                           Published{"gpp100", 101, 100},
                                           Published{"hinf1", 13, 14}, Published{"arch0", 174, 335},
                                           Published{"infp1", 10, 30}, Published{"infd1", 10, 30}),
                         name_of);

TEST(PublishedFolder, HoldsNoFileThatIsNotRead) {
  if (!fs::exists(folder())) GTEST_SKIP() << "there is no " << folder();
  for (const auto& entry : fs::directory_iterator(folder())) {
    if (entry.path().extension() != ".dat-s") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const auto read = testing::read_sdpa_text(
        {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
    EXPECT_EQ(read.report, "") << entry.path();
    EXPECT_TRUE(read.model.has_value()) << entry.path();
  }
}

}  // namespace
}  // namespace sdpsol
