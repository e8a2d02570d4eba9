// What --check prints, whole texts.
#include "solver/command/summary.h"

#include <gtest/gtest.h>

#include "solver/language/reader.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

std::string summary_of(std::string text) {
  const Source source("t.def", std::move(text));
  Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  if (!model) return diagnostics.render(source);
  return summary_text(source, *model, build_problem(*model));
}

TEST(Summary, OfEverything) {
  EXPECT_EQ(summary_of("variable P(3,3) symmetric, D(2,2) diagonal, x, G(2,1);\n"
                       "variable y;\n"
                       "P > 0;\n"
                       "[x, 1, 0; 1, y, 0; 0, 0, 5] >= 0;\n"
                       "G >= 0; x == y;\n"
                       "minimize o = trace(P) + D(1,1);\n"
                       "BIGM = 1e6; NU = 10; MAXITER = 50;\n"),
            "5 variables, 12 unknowns\n"
            "  P: 3x3 symmetric\n"
            "  D: 2x2 diagonal\n"
            "  x: scalar\n"
            "  G: 2x1\n"
            "  y: scalar\n"
            "4 conditions: 3 rows, 1 equation, 2 matrix blocks up to 3x3\n"
            "  line 3: 3x3 matrix > 0\n"
            "  line 4: 3x3 matrix >= 0\n"
            "  line 5: 2x1 entries >= 0\n"
            "  line 5: scalar == 0\n"
            "minimize o, line 6\n"
            "MAXITER = 50 instead of 100\n"
            "BIGM = 1e+06 instead of 15000\n");
}

TEST(Summary, TakesNeighboursOfOneKindTogether) {
  EXPECT_EQ(summary_of("variable z0, z1, z2, z3;\nz0 > 0; z1 > 1;\nz2 > 2;\n\nz3 > z0;\n"),
            "4 variables, 4 unknowns\n"
            "  z0, z1, z2, z3: scalar\n"
            "4 conditions: 4 rows\n"
            "  lines 2 to 5: 4 of scalar > 0\n"
            "no objective\n");
  EXPECT_EQ(summary_of("variable z0, z1, z2, z3, z4, z5;\nz0 < 1;\n"),
            "6 variables, 6 unknowns\n"
            "  z0, z1, ..., z5 (6): scalar\n"
            "1 condition: 1 row\n"
            "  line 2: scalar > 0\n"
            "no objective\n");
}

TEST(Summary, OfNextToNothing) {
  EXPECT_EQ(summary_of("1 > 0;\n"),
            "0 variables, 0 unknowns\n"
            "1 condition: 1 row\n"
            "  line 1: scalar > 0\n"
            "no objective\n");
  EXPECT_EQ(summary_of("variable x;\nmaximize o = x;\n"),
            "1 variable, 1 unknown\n"
            "  x: scalar\n"
            "0 conditions\n"
            "maximize o, line 2\n");
}

}  // namespace
}  // namespace sdpsol
