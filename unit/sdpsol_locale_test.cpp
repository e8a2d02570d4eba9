// A host may have set a global locale with decimal commas and digit grouping;
// every text and number must be as without.
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <fstream>
#include <locale>
#include <sstream>
#include <string>

#include "unit/intforce_fixture.h"

namespace {

using namespace unit_test;

class CommaNumbers : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

class GlobalLocale : public IntForce {
 protected:
  GlobalLocale()
      : before_(std::locale::global(std::locale(std::locale::classic(), new CommaNumbers))) {
    std::cout.imbue(std::locale());
  }
  ~GlobalLocale() override {
    std::locale::global(before_);
    std::cout.imbue(before_);
  }

 private:
  std::locale before_;
};

TEST_F(GlobalLocale, IsReallySet) {
  std::ostringstream stream;
  stream << 1234.5 << " " << 65537;
  EXPECT_EQ(stream.str(), "1.234,5 65.537");
}

TEST_F(GlobalLocale, DoesNotChangeAnInequality) {
  driver_.isFeasible({{{1234.5, 0.25}, {1e7, 123456}}}, true);
  EXPECT_EQ(driver_.definition,
            "P0=[1234.5,0.25;1e+07,123456];\n"
            "P=P0;\n"
            "P>0;\n");
  EXPECT_EQ(content_of(driver_.definitionFile), driver_.definition);
}

TEST_F(GlobalLocale, DoesNotChangeAGrasp) {
  std::vector<double> values(1);
  ask(&sdpsol_wrapper::internalForceMaximizeAll, {0.5, 1234.5, -100000}, {3}, {0.25},
      {0, 1000, 0.5, 2000.5, 0, 10}, &values);
  EXPECT_EQ(driver_.definition,
            "variable epsilon0;\n"
            "BIGM=300000;\n"
            "variable z0;\n"
            "x0=0.5*z0;\n"
            "x1=1234.5*z0;\n"
            "x2=-100000*z0;\n"
            "P0=[\n"
            "x2*0.25,0,x0;\n"
            "0,x2*0.25,x1;\n"
            "x0,x1,x2*0.25\n"
            "];\n"
            "x0>0;\n"
            "x0<1000;\n"
            "x1>0.5;\n"
            "x1<2000.5;\n"
            "x2>0;\n"
            "x2<10;\n"
            "epsilon0>0;\n"
            "[P0] - \n"
            "[epsilon0*eye(3)] > 0;\n"
            "maximize objective=((0+epsilon0)/0);\n");
}

TEST_F(GlobalLocale, DoesNotGroupIndices) {
  const std::string text = driver_.intforce_basic_defs(std::vector<double>(1001, 1.0), {}, 1, 1001);
  EXPECT_NE(text.find("\nvariable z1000;\n"), std::string::npos);
  EXPECT_NE(text.find("+1*z1000;\n"), std::string::npos);
}

TEST_F(GlobalLocale, DoesNotChangeWarnings) {
  expect_refused(ask(&sdpsol_wrapper::internalForceExists, {1, 2}, {65537}, {1}, {}),
                 "sdpsol_wrapper-warning: sum of contact types is 65537, size of Base is 2, "
                 "problem is not solved\n");
}

TEST_F(GlobalLocale, DoesNotChangeParameters) {
  driver_.setParameters({1234.5, 0.25, 10000, 4.4e-6, 123456, 15000});
  EXPECT_EQ(driver_.definition,
            "NU=1234.5;\n"
            "GAMMA=0.25;\n"
            "MAXITER=10000;\n"
            "ABSTOL=4.4e-06;\n"
            "RELTOL=123456;\n"
            "BIGM=15000;\n");
}

TEST_F(GlobalLocale, DoesNotChangeWhatIsRead) {
  answer_with(
      "*** Objective value\nobjective = 1234.5\n\n*** Variables\n"
      "a = 0.5\n\nb = 1,5\n\nc = 1.234.5\n\nd = 1e\n\ne = 1e999\n\nf = 1.5e1e1\n\n"
      "X =\n[\n  2.5,\n]\n\n");
  EXPECT_EQ(driver_.run(), 0);
  EXPECT_EQ(driver_.lastResult.objectiveValue, 1234.5);
  EXPECT_EQ(driver_.lastResult.variableNames,
            (std::vector<std::string>{"a", "b", "c", "d", "e", "f", "X_0"}));
  EXPECT_EQ(driver_.lastResult.variableValues,
            (std::vector<double>{0.5, 1.0, 1.234, 0.0, 1.7976931348623157e308, 15.0, 2.5}));
}

TEST_F(GlobalLocale, DoesNotGroupElementNumbers) {
  std::string text = "*** Objective value\nNO OBJECTIVE.\n\n*** Variables\nX =\n[\n";
  for (int k = 0; k < 1001; ++k) text += "  1,\n";
  answer_with(text + "]\n\n");
  EXPECT_EQ(driver_.run(), 0);
  EXPECT_EQ(driver_.lastResult.variableNames.back(), "X_1000");
}

// Writes every "a" into files as "A", and reads that back as "a".
class ShoutingFiles : public std::codecvt<char, char, std::mbstate_t> {
 protected:
  bool do_always_noconv() const noexcept override { return false; }

  result do_out(std::mbstate_t& /*state*/, const char* from, const char* from_end,
                const char*& from_next, char* to, char* to_end, char*& to_next) const override {
    return replace('a', 'A', from, from_end, from_next, to, to_end, to_next);
  }

  result do_in(std::mbstate_t& /*state*/, const char* from, const char* from_end,
               const char*& from_next, char* to, char* to_end, char*& to_next) const override {
    return replace('A', 'a', from, from_end, from_next, to, to_end, to_next);
  }

 private:
  static result replace(char what, char by, const char* from, const char* from_end,
                        const char*& from_next, char* to, char* to_end, char*& to_next) {
    const auto count = std::min(from_end - from, to_end - to);
    from_next = from + count;
    to_next = std::replace_copy(from, from_next, to, what, by);
    return from_next == from_end ? ok : partial;
  }
};

TEST(FileConversion, OfTheGlobalLocaleChangesNeitherFile) {
  const TestFolder dir;
  sdpsol_wrapper driver("true", dir.path("def"), dir.path("res"));
  driver.definition = "abcABC";
  write_file(dir.path("res"), "abcABC");
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new ShoutingFiles));
  std::ofstream(dir.path("host")) << "abc";
  const int written = driver.writeDefinition();
  const int read = driver.readResult();
  std::locale::global(before);
  EXPECT_EQ(content_of(dir.path("host")), "Abc");
  EXPECT_EQ(written, 0);
  EXPECT_EQ(content_of(dir.path("def")), "abcABC");
  EXPECT_EQ(read, 0);
  EXPECT_EQ(driver.resultText, "abcABC");
}

TEST(CLocale, WithDecimalCommasChangesNothing) {
  const TestFolder dir;
  // Made on the spot, because few machines have one installed.
  const std::string name = dir.path("comma");
  const std::string make = "localedef -i de_DE -f UTF-8 " + name + " >/dev/null 2>&1";
  if (std::system(make.c_str()) != 0) GTEST_SKIP() << "no locale with decimal commas can be made";
  const std::string before = std::setlocale(LC_ALL, nullptr);
  ASSERT_EQ(setenv("LOCPATH", dir.path("").c_str(), 1), 0);
  const bool set = std::setlocale(LC_ALL, "comma") != nullptr;
  const std::string point = std::localeconv()->decimal_point;
  unsetenv("LOCPATH");
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  driver.setParameters({1234.5, 0.25, 10000, 4.4e-6, 123456, 15000});
  driver.resultText =
      "*** Objective value\nobjective = 2.5\n\n*** Variables\na = 1.5e\n\nb = 0.5\n\n";
  const int code = driver.parseResult();
  std::setlocale(LC_ALL, before.c_str());
  ASSERT_TRUE(set);
  EXPECT_EQ(point, ",");
  EXPECT_EQ(code, 0);
  EXPECT_EQ(driver.lastResult.objectiveValue, 2.5);
  EXPECT_EQ(driver.lastResult.variableValues, (std::vector<double>{0.0, 0.5}));
  EXPECT_EQ(driver.definition,
            "NU=1234.5;\n"
            "GAMMA=0.25;\n"
            "MAXITER=10000;\n"
            "ABSTOL=4.4e-06;\n"
            "RELTOL=123456;\n"
            "BIGM=15000;\n");
}

}  // namespace
