// Long scalars and what is composed of them.
#include "solver/language/forms.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "solver/language/test_read_text.h"

namespace sdpsol {
namespace {

const std::string kVariables = "variable u(5,1); variable y;\n";
const std::string kLong = "(1+2*u(1,1)-3*u(2,1)+4*u(3,1)+0.5*u(5,1))";
const std::string kOther = "(7*u(2,1)+u(3,1)-u(4,1)-2+y)";

// The first condition of a text, written out.
AffineMatrix first_condition(const std::string& text) {
  const ReadText read = read_text(kVariables + text);
  EXPECT_TRUE(read.model) << read.report;
  if (!read.model) return {};
  return written_out(read.model->conditions.at(0).difference, read.model->forms);
}

TEST(Forms, AreReferredToByWhatIsComposedOfThem) {
  const ReadText read =
      read_text(kVariables + "f = " + kLong + "; A = [f, 0; 0, 2*f]; A > 0; f > y;");
  ASSERT_TRUE(read.model) << read.report;
  ASSERT_EQ(read.model->forms.size(), 1U);
  EXPECT_EQ(read.model->forms[0].size(), 5U);
  EXPECT_EQ(read.model->conditions[0].difference.terms,
            (std::vector<AffineTerm>{{0, 0, kFirstForm, 1, 1}, {1, 1, kFirstForm, 2, 2}}));
  EXPECT_EQ(written_out_size(read.model->conditions[0].difference.terms, read.model->forms), 10U);
}

// `text` with f and g in place of F and G.
std::string filled(std::string_view text, const std::string& f, const std::string& g) {
  std::string result;
  for (const char c : text) {
    if (c == 'F') {
      result += f;
    } else if (c == 'G') {
      result += g;
    } else {
      result += c;
    }
  }
  return result;
}

TEST(Forms, MeanTheSameAsTheTermsInTheirPlace) {
  const std::string names = filled("f = F; g = G; ", kLong, kOther);
  for (const std::string_view text :
       {"F > G;", "[F,G;G,2*F-G] > 0;", "A = [F,G]; 2*A' > [1;y];", "trace([F,1;1,G]) == 3;",
        "-F*0.25+G/4-F >= 0;", "B = [F; -G]; B(2,1) + B(1,1) > 0;", "0*F + y > 0*G;"}) {
    EXPECT_EQ(first_condition(names + filled(text, "f", "g")).terms,
              first_condition(filled(text, kLong, kOther)).terms)
        << text;
  }
}

TEST(Forms, AreMultipliedOutByFactorsNearTheEndsOfTheNumbers) {
  const std::string f = "f = " + kLong + "; ";
  for (const std::string factor : {"1e260", "1e-260"}) {
    EXPECT_EQ(first_condition(f + factor + "*f > 0;").terms,
              first_condition(factor + "*" + kLong + " > 0;").terms);
  }
  std::string doubled = f + "A = [1e249*f, f]; ";
  for (int i = 0; i < 20; ++i) doubled += "A = A + A; ";
  EXPECT_EQ(first_condition(doubled + "A > 0;").terms,
            first_condition("[1e249*1048576*" + kLong + ", 1048576*" + kLong + "] > 0;").terms);
}

TEST(Forms, AreVariablesInAProduct) {
  const std::string names = filled("f = F; g = G; ", kLong, kOther);
  const std::string report = read_text(kVariables + names + "f*g > 0;").report;
  EXPECT_NE(report.find("variables in both factors"), std::string::npos) << report;
  EXPECT_NE(report.find("variable 'u' is declared here"), std::string::npos) << report;
}

TEST(Forms, StayWithThoseWhoReferToThemWhenTheNameMovesOn) {
  const std::string text = "f = " + kLong + "; A = [f, y]; f = " + kOther + "; g = f; f = 1; ";
  EXPECT_EQ(first_condition(text + "A > [0, g];").terms,
            first_condition("[" + kLong + ", y] > [0, " + kOther + "];").terms);
}

TEST(Forms, OfNamesThatAreAssignedAgainAreGivenBack) {
  std::string text = "f = " + kLong + ";\n";
  for (int i = 0; i < 100; ++i) text += "f = f + y; A = [f, 1];\n";
  const ReadText read = read_text(kVariables + text + "f > 0;");
  ASSERT_TRUE(read.model) << read.report;
  EXPECT_LE(read.model->forms.size(), 3U);
  EXPECT_EQ(written_out(read.model->conditions[0].difference, read.model->forms).terms.back().value,
            100);
}

TEST(Forms, OfEqualTermsMakeASymmetricMatrix) {
  const ReadText read =
      read_text(kVariables + "f = " + kLong + "; g = " + kLong + "; [1, f; g, 1] > 0;");
  EXPECT_TRUE(read.model);
  EXPECT_EQ(read.report, "");
}

TEST(Forms, ThatDifferAreNamedByTheirEntries) {
  const ReadText read =
      read_text(kVariables + "f = " + kLong + "; g = f + u(2,1); [1, f; g, 1] > 0;");
  EXPECT_FALSE(read.model);
  EXPECT_NE(read.report.find("in the coefficient of 'u(2,1)', entry (1,2) is -3 and entry (2,1) is "
                             "-2"),
            std::string::npos)
      << read.report;
}

TEST(Forms, OverflowWhereTheirTermsDo) {
  const auto report = [](const std::string& text) {
    return read_text(kVariables + "f = 1e20*" + kLong + "; " + text).report;
  };
  EXPECT_EQ(report("1e200*f > 0;"), "");
  EXPECT_NE(report("1e200*f*1e100 > 0;").find("a coefficient becomes too large"),
            std::string::npos);
  std::string doubled = "A = 1e250*[f, y];\n";
  for (int i = 0; i < 200; ++i) doubled += "A = A + A;\n";
  EXPECT_NE(report(doubled + "A > 0;").find("a coefficient becomes too large"), std::string::npos);
}

}  // namespace
}  // namespace sdpsol
