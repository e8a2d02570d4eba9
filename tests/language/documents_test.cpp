// The documents cannot lie: every definition in them is run by the command, and what
// it says is what stands there.
//
// UPDATE_GOLDEN=1 rewrites the reports in the documents; such a run fails, so that it
// is never taken for a passing one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/command/run_command.h"
#include "tests/language/examples.h"

namespace sdpsol {
namespace {

struct Document {
  const char* name;
  std::size_t fewest_examples;  ///< fewer would mean that they are not found any more
};

void PrintTo(const Document& document, std::ostream* out) {
  *out << document.name;
}

class ADocument : public testing::TestWithParam<Document> {};

TEST_P(ADocument, ShowsWhatTheCommandSays) {
  const std::string path = std::string(SDPSOL_SOURCE_DIR) + "/docs/" + GetParam().name + ".md";
  std::string text = content_of(path);
  const std::vector<Example> examples = examples_of(text);
  EXPECT_GE(examples.size(), GetParam().fewest_examples);

  const TestFolder folder;
  std::vector<std::string> reports;
  for (const Example& example : examples) {
    folder.file("example.def", example.definition);
    const Ended ended = run_line(folder, "$S example.def");
    reports.push_back(shown(ended.output, ended.error, example.report));
    EXPECT_EQ(reports.back(), example.report) << GetParam().name << ".md:" << example.line << ":\n"
                                              << example.definition;
    EXPECT_EQ(ended.status, ended.error.find(": error: ") == std::string::npos ? 0 : 1);
  }
  if (std::getenv("UPDATE_GOLDEN") == nullptr) return;
  for (std::size_t i = examples.size(); i-- > 0;) {
    const Example& example = examples[i];
    text.replace(example.report_begin, example.report_end - example.report_begin, reports[i]);
  }
  test_support::write_file(path, text);
  FAIL() << "rewritten: " << path;
}

INSTANTIATE_TEST_SUITE_P(OfThisProject, ADocument,
                         testing::Values(Document{"language", 50}, Document{"verdicts", 20}),
                         [](const auto& suite) { return std::string(suite.param.name); });

TEST(Examples, AreDefinitionsWithTheReportThatFollows) {
  const auto examples = examples_of("a\n```sdpsol\nx > 0;\n```\nb\n```text\nFEASIBLE\n```\n");
  ASSERT_EQ(examples.size(), 1U);
  EXPECT_EQ(examples[0].line, 3U);
  EXPECT_EQ(examples[0].definition, "x > 0;\n");
  EXPECT_EQ(examples[0].report, "FEASIBLE\n");
}

TEST(Examples, AreAllRun) {
  // What would not be run is refused.
  EXPECT_THROW(examples_of("```sdpsol\nx;\n```\n"), std::runtime_error);
  EXPECT_THROW(examples_of("```sdpsol\nx;\n```\n```sdpsol\ny;\n```\n"), std::runtime_error);
  EXPECT_THROW(examples_of("```text\nx\n```\n"), std::runtime_error);
  EXPECT_THROW(examples_of("```\nx;\n```\n"), std::runtime_error);
  EXPECT_THROW(examples_of("```sdpsol\nx;\n"), std::runtime_error);
  EXPECT_TRUE(examples_of("```ebnf\nx := y\n```\n").empty());
}

TEST(Examples, ShowVerdictReasonAndTheValuesThatAreClaimed) {
  const std::string output =
      "sdpsol\nFEASIBLE\n\n*** Objective value\nobjective = 2.2360679\n\n*** Variables\n"
      "x = 1.9999999999\n\ny = -1e-09\n\n";
  EXPECT_EQ(shown(output, "", ""), "FEASIBLE\n");
  EXPECT_EQ(shown(output, "w\n", "FEASIBLE\nobjective = 9.999\nx = 2\ny = 0\n"),
            "w\nFEASIBLE\nobjective = 2.236\nx = 2\ny = 0\n");
  EXPECT_EQ(shown("INFEASIBLE\nwhy, line 1\n\n*** Variables\n\n", "", "x = 2\n"),
            "INFEASIBLE\nwhy, line 1\n");
}

}  // namespace
}  // namespace sdpsol
