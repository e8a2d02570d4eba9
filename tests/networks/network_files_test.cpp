// Networks as data: zelrun runs every file of tests/networks/good, and refuses
// every file of bad/, each with one error, with exactly the text in its .expected
// and status 1.
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

#include "tests/command/run_command.h"

namespace {

namespace fs = std::filesystem;

fs::path folder(const std::string& kind) {
  return fs::path(SDPSOL_SOURCE_DIR) / "tests" / "networks" / kind;
}

std::vector<std::string> networks(const std::string& kind) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder(kind))) {
    if (entry.path().extension() == ".json") names.push_back(entry.path().stem());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The places that differ from one machine to the next.
std::string with_placeholders(std::string text) {
  const auto replace = [&text](const std::string& folder, const std::string& placeholder) {
    for (std::size_t at = 0; (at = text.find(folder, at)) != std::string::npos;)
      text.replace(at, folder.size(), placeholder);
  };
  replace(fs::path(SDPSOL_BIN_DIR).parent_path(), "BUILD");
  replace(SDPSOL_SOURCE_DIR, "SOURCE");
  return text;
}

class GoodNetwork : public testing::TestWithParam<std::string> {};
class BadNetwork : public testing::TestWithParam<std::string> {};

TEST_P(GoodNetwork, IsRun) {
  const sdpsol::TestFolder working_folder;
  const std::string file = folder("good") / (GetParam() + ".json");
  const sdpsol::Ended ended =
      sdpsol::run_line(working_folder, "PATH=" SDPSOL_BIN_DIR ":$PATH\nzelrun run --json " + file);
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");
  EXPECT_EQ(ended.output.front(), '{');
}

TEST_P(BadNetwork, IsRefusedAsExpected) {
  const sdpsol::TestFolder working_folder;
  const sdpsol::Ended ended = sdpsol::run_line(
      working_folder,
      "cd " + folder("bad").string() + "\n" SDPSOL_BIN_DIR "/zelrun run " + GetParam() + ".json");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.output, "");
  const std::string error = with_placeholders(ended.error);
  const fs::path expected = folder("bad") / (GetParam() + ".expected");
  if (std::getenv("UPDATE_GOLDEN") != nullptr) {
    std::ofstream(expected, std::ios::binary) << error;
    FAIL() << "rewritten: " << expected;
  }
  EXPECT_TRUE(fs::exists(expected)) << expected;
  EXPECT_EQ(error, contents(expected));
}

std::string name_of(const testing::TestParamInfo<std::string>& info) {
  return info.param;
}

INSTANTIATE_TEST_SUITE_P(Files, GoodNetwork, testing::ValuesIn(networks("good")), name_of);
INSTANTIATE_TEST_SUITE_P(Files, BadNetwork, testing::ValuesIn(networks("bad")), name_of);

}  // namespace
