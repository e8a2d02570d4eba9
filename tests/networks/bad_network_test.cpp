// Networks with one error each, as data: zelrun refuses every file of
// tests/networks/bad with exactly the text in its .expected, and status 1.
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

const fs::path kFolder = SDPSOL_SOURCE_DIR "/tests/networks/bad";

std::vector<std::string> networks() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kFolder)) {
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

class BadNetwork : public testing::TestWithParam<std::string> {};

TEST_P(BadNetwork, IsRefusedAsExpected) {
  const sdpsol::TestFolder folder;
  const sdpsol::Ended ended = sdpsol::run_line(
      folder, "cd " + kFolder.string() + "\n" SDPSOL_BIN_DIR "/zelrun run " + GetParam() + ".json");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.output, "");
  const std::string error = with_placeholders(ended.error);
  const fs::path expected = kFolder / (GetParam() + ".expected");
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

INSTANTIATE_TEST_SUITE_P(Files, BadNetwork, testing::ValuesIn(networks()), name_of);

}  // namespace
