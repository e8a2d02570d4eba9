// Networks as data: zelrun runs every file of tests/networks/good, and refuses
// every file of bad/, each with one error, with exactly the text in its .expected
// and status 1.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/command/run_command.h"
#include "tests/support/golden_files.h"

namespace {

namespace fs = std::filesystem;

fs::path folder(const std::string& kind) {
  return fs::path(SDPSOL_SOURCE_DIR) / "tests" / "networks" / kind;
}

std::vector<std::string> networks(const std::string& kind) {
  return test_support::names_with_ending(folder(kind), ".json");
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
  test_support::expect_content(folder("bad") / (GetParam() + ".expected"),
                               with_placeholders(ended.error));
}

INSTANTIATE_TEST_SUITE_P(Files, GoodNetwork, testing::ValuesIn(networks("good")),
                         test_support::name_of_file);
INSTANTIATE_TEST_SUITE_P(Files, BadNetwork, testing::ValuesIn(networks("bad")),
                         test_support::name_of_file);

}  // namespace
