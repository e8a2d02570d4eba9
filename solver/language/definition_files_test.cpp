// Definitions as data: every file of tests/definitions/good is read without an error and
// comes out as its .expected says, notes first and the model after them; every
// file of bad/ fails with exactly the report in its .expected.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "solver/language/reader.h"
#include "solver/language/test_model_dump.h"
#include "tests/support/golden_files.h"

namespace sdpsol {
namespace {

using test_support::name_of_file;

constexpr const char* kEnding = ".def";

std::filesystem::path folder(const std::string& kind) {
  return std::filesystem::path(SDPSOL_SOURCE_DIR) / "tests" / "definitions" / kind;
}

void read(const std::string& kind, const std::string& name, bool expect_accepted) {
  const std::string file = name + kEnding;
  const Source source(file, test_support::content_of((folder(kind) / file).string()));
  Diagnostics diagnostics;
  const std::optional<Model> model = read_definition(source, diagnostics);
  const std::string actual = diagnostics.render(source) + (model ? dump(*model, source) : "");
  EXPECT_EQ(model.has_value(), expect_accepted) << actual;
  EXPECT_EQ(model.has_value(), diagnostics.error_count() == 0);
  test_support::expect_content(folder(kind) / (name + ".expected"), actual);
}

class GoodDefinition : public ::testing::TestWithParam<std::string> {};
class BadDefinition : public ::testing::TestWithParam<std::string> {};

TEST_P(GoodDefinition, IsReadAsExpected) {
  read("good", GetParam(), true);
}
TEST_P(BadDefinition, IsRejectedAsExpected) {
  read("bad", GetParam(), false);
}

std::vector<std::string> files(const std::string& kind) {
  return test_support::names_with_ending(folder(kind), kEnding);
}

INSTANTIATE_TEST_SUITE_P(Files, GoodDefinition, ::testing::ValuesIn(files("good")), name_of_file);
INSTANTIATE_TEST_SUITE_P(Files, BadDefinition, ::testing::ValuesIn(files("bad")), name_of_file);

}  // namespace
}  // namespace sdpsol
