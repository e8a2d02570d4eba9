// Every run ends: definitions over which an engine has run for ever.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

struct Endless {
  const char* name;
  const char* text;
};

void PrintTo(const Endless& endless, std::ostream* out) {
  *out << endless.text;
}

class Ends : public ::testing::TestWithParam<Endless> {};

TEST_P(Ends, WithAVerdict) {
  const TestFolder folder;
  folder.file("in.def", GetParam().text);
  // A thousandth of it is enough; 124 is what timeout answers if it is not.
  EXPECT_EQ(run_line(folder, "timeout 10 $S -o out in.def").status, 0);
  EXPECT_TRUE(folder.exists("out"));
}

INSTANTIATE_TEST_SUITE_P(
    Definitions, Ends,
    ::testing::Values(
        // The matrix is singular for every value, and the objective has no bound but the box.
        Endless{"Singular", "variable x; (1-x)*[10,0,2;0,10,6;2,6,4]>=0; maximize o=-x;"},
        Endless{"SingularStrict", "variable x; (1-x)*[10,0,2;0,10,6;2,6,4]>0; maximize o=-x;"},
        Endless{"SingularOfFour",
                "variable x; (1-x)*[10,0,2,0;0,10,6,-10;2,6,4,-6;0,-10,-6,10]>=0; maximize o=-x;"}),
    [](const auto& suite) { return std::string(suite.param.name); });

}  // namespace
}  // namespace sdpsol
