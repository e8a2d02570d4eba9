// Completion in bash, as bash calls it: the words of the line, and which of them is
// being completed.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/command/manual_page.h"
#include "tests/command/run_command.h"

namespace sdpsol {

using Words = std::set<std::string>;

/// Completes the last of the words, in the folder.
/// @param script where the completion of the command is, below the sources.
inline Words completed(const TestFolder& folder, const std::string& command,
                       const std::string& script, const std::vector<std::string>& words) {
  std::string line =
      "cd " + folder.path() + "; . " SDPSOL_SOURCE_DIR "/" + script + "; COMP_WORDS=(" + command;
  for (const std::string& word : words) line += " '" + word + "'";
  const std::string last = words.back();
  const std::string previous = words.size() > 1 ? words[words.size() - 2] : command;
  line += "); COMP_CWORD=" + std::to_string(words.size()) + "; function=$(complete -p " + command +
          " | sed \"s/.*-F \\([^ ]*\\) .*/\\1/\"); $function " + command + " '" + last + "' '" +
          previous + "'; printf \"%s\\n\" \"${COMPREPLY[@]}\"";
  const TestFolder scripts;
  const std::string file = scripts.file("script.bash", line + "\n");
  const Ended ended = run_line(scripts, "bash --norc --noprofile " + file);
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");
  Words found;
  std::istringstream lines(ended.output);
  for (std::string one; std::getline(lines, one);) {
    if (!one.empty()) found.insert(one);
  }
  return found;
}

/// The names of all options in what a command prints for --help.
inline Words option_words(const std::string& help) {
  const std::vector<std::string> names = option_names(help);
  return {names.begin(), names.end()};
}

}  // namespace sdpsol
