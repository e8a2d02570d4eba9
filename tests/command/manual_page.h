// Manual pages as they are read, and what they have to have.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/command/run_command.h"

namespace sdpsol {

/// The page without the pictures of bold letters.
inline std::string manual_page(const std::string& file) {
  const TestFolder folder;
  Ended ended = run_line(folder, "groff -mandoc -Tascii -P-cbou " + file);
  EXPECT_EQ(ended.status, 0) << ended.error;
  return std::move(ended.output);
}

/// What its formatter complains about.
inline std::string complaints_about(const std::string& file) {
  const TestFolder folder;
  const Ended ended = run_line(folder, "groff -ww -mandoc -Tutf8 -z " + file);
  EXPECT_EQ(ended.status, 0);
  return ended.output + ended.error;
}

/// The names of all options in what a command prints for --help.
inline std::vector<std::string> option_names(const std::string& help) {
  std::vector<std::string> all;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("  -")) continue;
    std::istringstream names(line.substr(2, line.find(' ', 2) - 2));
    for (std::string name; std::getline(names, name, ',');) all.push_back(name);
  }
  return all;
}

/// Whether an option stands at the beginning of a paragraph of its own, alone or beside
/// its other name.
inline bool has_option(const std::string& page, const std::string& name) {
  const std::string options = page.substr(page.find("\nOPTIONS\n"));
  for (const char* const end : {"\n", " ", ","}) {
    if (options.find("\n     " + name + end) != std::string::npos) return true;
    if (options.find(", " + name + end) != std::string::npos) return true;
  }
  return false;
}

/// Whether the page says what an exit status means.
inline bool has_status(const std::string& page, int status) {
  return page.find("\n     " + std::to_string(status) + "  ") != std::string::npos;
}

}  // namespace sdpsol
