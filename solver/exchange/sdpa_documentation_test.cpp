// The examples of docs/sdpa.md are what they are said to be.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "solver/exchange/exported_programs.h"
#include "solver/exchange/sdpa_writer.h"
#include "solver/exchange/test_read_sdpa.h"
#include "solver/language/test_read_text.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

/// The one example of this kind.
std::string example(const std::string& kind) {
  std::ifstream file(std::string(SDPSOL_SOURCE_DIR) + "/docs/sdpa.md", std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const std::string mark = "```" + kind + "\n";
  const std::size_t begin = text.find(mark);
  if (begin == std::string::npos) {
    ADD_FAILURE() << "no example of the kind " << kind;
    return "";
  }
  const std::size_t end = text.find("```", begin + mark.size());
  return text.substr(begin + mark.size(), end - begin - mark.size());
}

TEST(SdpaDocumentation, ItsFileIsReadWithoutAMessage) {
  const auto read = testing::read_sdpa_text(example("sdpa"));
  EXPECT_EQ(read.report, "");
  ASSERT_TRUE(read.model.has_value());
  EXPECT_EQ(read.model->unknown_count, 2);
  ASSERT_EQ(read.model->conditions.size(), 2U);
  EXPECT_EQ(read.model->conditions[1].difference.terms,
            (std::vector<AffineTerm>{{0, 0, kConstant, -0.5, 0.5},
                                     {0, 0, 0, 1, 1},
                                     {1, 0, kConstant, 8, 8},
                                     {1, 0, 1, -1, 1}}));
}

TEST(SdpaDocumentation, ItsDefinitionIsWrittenAsItShows) {
  const ReadText read = read_text(example("definition"));
  EXPECT_EQ(read.report, "");
  ASSERT_TRUE(read.model.has_value());
  const Problem problem = build_problem(*read.model);
  EXPECT_EQ(sdpa_text(cone_program_of(problem), cone_program_comment(problem)), example("export"));
}

}  // namespace
}  // namespace sdpsol
