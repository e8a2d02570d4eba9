// Files as data: every file of tests/exchange/good is read without an error and
// comes out as its .expected says, notes first and the model after them; every
// file of bad/ fails with exactly the report in its .expected.
//
// UPDATE_GOLDEN=1 rewrites the .expected files; such a run fails, so that it is
// never taken for a passing one.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "solver/exchange/sdpa_reader.h"
#include "solver/language/model_dump.h"

namespace sdpsol {
namespace {

namespace fs = std::filesystem;

fs::path folder(const std::string& kind) {
  return fs::path(SDPSOL_SOURCE_DIR) / "tests" / "exchange" / kind;
}

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> files(const std::string& kind) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder(kind))) {
    if (entry.path().extension() == ".dat-s") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string outcome(const fs::path& path, bool& accepted) {
  const Source source(path.filename().string(), contents(path));
  Diagnostics diagnostics;
  const std::optional<Model> model = read_sdpa(source, diagnostics);
  accepted = model.has_value();
  EXPECT_EQ(accepted, diagnostics.error_count() == 0);
  return diagnostics.render(source) + (model ? dump(*model, source) : "");
}

void compare(const std::string& kind, const std::string& name, bool expect_accepted) {
  const fs::path expected = folder(kind) / (name + ".expected");
  bool accepted = false;
  const std::string actual = outcome(folder(kind) / (name + ".dat-s"), accepted);
  EXPECT_EQ(accepted, expect_accepted) << actual;
  if (std::getenv("UPDATE_GOLDEN") != nullptr) {
    std::ofstream(expected, std::ios::binary) << actual;
    FAIL() << "rewritten: " << expected;
  }
  EXPECT_TRUE(fs::exists(expected)) << expected;
  EXPECT_EQ(actual, contents(expected));
}

class GoodSdpaFile : public testing::TestWithParam<std::string> {};
class BadSdpaFile : public testing::TestWithParam<std::string> {};

TEST_P(GoodSdpaFile, IsReadAsExpected) {
  compare("good", GetParam(), true);
}
TEST_P(BadSdpaFile, IsRejectedAsExpected) {
  compare("bad", GetParam(), false);
}

std::string name_of(const testing::TestParamInfo<std::string>& info) {
  return info.param;
}

INSTANTIATE_TEST_SUITE_P(Files, GoodSdpaFile, testing::ValuesIn(files("good")), name_of);
INSTANTIATE_TEST_SUITE_P(Files, BadSdpaFile, testing::ValuesIn(files("bad")), name_of);

}  // namespace
}  // namespace sdpsol
