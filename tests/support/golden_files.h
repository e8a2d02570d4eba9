// Files as data: what becomes of each is held against the .expected file beside it.
//
// UPDATE_GOLDEN=1 rewrites the .expected files; such a run fails, so that it is never
// taken for a passing one.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/test_folder.h"

namespace test_support {

/// The names, without it, of the files in a folder that have this ending; sorted.
inline std::vector<std::string> names_with_ending(const std::filesystem::path& folder,
                                                  std::string_view ending) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (name.ends_with(ending)) names.push_back(name.substr(0, name.size() - ending.size()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// Fails where the file does not hold exactly this text, or does not exist.
inline void expect_content(const std::filesystem::path& expected, const std::string& actual) {
  if (std::getenv("UPDATE_GOLDEN") != nullptr) {
    write_file(expected.string(), actual);
    FAIL() << "rewritten: " << expected;
  }
  ASSERT_TRUE(std::filesystem::exists(expected)) << expected;
  EXPECT_EQ(actual, content_of(expected.string()));
}

/// For INSTANTIATE_TEST_SUITE_P: a test is called as its file.
inline std::string name_of_file(const testing::TestParamInfo<std::string>& info) {
  return info.param;
}

}  // namespace test_support
