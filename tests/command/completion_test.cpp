// Completion in bash, as bash calls it: the words of the line, and which of them is
// being completed.
#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "solver/command/options.h"
#include "tests/command/manual_page.h"
#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

using Words = std::set<std::string>;

/// Completes the last of the words, in the folder.
Words completed(const TestFolder& folder, const std::vector<std::string>& words) {
  std::string line = "cd " + folder.path() +
                     "; . " SDPSOL_SOURCE_DIR
                     "/solver/command/sdpsol.bash-completion; COMP_WORDS=(sdpsol";
  for (const std::string& word : words) line += " '" + word + "'";
  const std::string last = words.back();
  const std::string previous = words.size() > 1 ? words[words.size() - 2] : "sdpsol";
  line +=
      "); COMP_CWORD=" + std::to_string(words.size()) +
      "; function=$(complete -p sdpsol | sed \"s/.*-F \\([^ ]*\\) .*/\\1/\"); $function sdpsol '" +
      last + "' '" + previous + "'; printf \"%s\\n\" \"${COMPREPLY[@]}\"";
  const TestFolder scripts;
  const std::string script = scripts.file("script.bash", line + "\n");
  const Ended ended = run_line(scripts, "bash --norc --noprofile " + script);
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.error, "");
  Words found;
  std::istringstream lines(ended.output);
  for (std::string one; std::getline(lines, one);) {
    if (!one.empty()) found.insert(one);
  }
  return found;
}

TEST(Completion, KnowsEveryOption) {
  const TestFolder folder;
  const char* const words[] = {"sdpsol", "--help"};
  const auto names = option_names(parse_command_line(2, words).output);
  const Words options(names.begin(), names.end());
  EXPECT_GE(options.size(), 12U);
  EXPECT_EQ(completed(folder, {"-"}), options);
  EXPECT_EQ(completed(folder, {"-q", "--export"}),
            Words({"--export-sdpa", "--export-sdpa-margin"}));
  EXPECT_EQ(completed(folder, {"--j"}), Words({"--json"}));
  EXPECT_EQ(completed(folder, {"--unknown"}), Words());
}

TEST(Completion, KnowsWhatOptionsTake) {
  const TestFolder folder;
  folder.file("file", "");
  EXPECT_EQ(completed(folder, {"--format", ""}), Words({"sdpsol", "sdpa"}));
  EXPECT_EQ(completed(folder, {"--format", "sdps"}), Words({"sdpsol"}));
  EXPECT_EQ(completed(folder, {"--format", "=", "sdpa"}), Words({"sdpa"}));
  EXPECT_EQ(completed(folder, {"--format", "="}), Words({"sdpsol", "sdpa"}));
  EXPECT_EQ(completed(folder, {"--engine", ""}), Words({"auto", "cones", "csdp"}));
  EXPECT_EQ(completed(folder, {"--engine", "x"}), Words());
  EXPECT_EQ(completed(folder, {"--help", ""}), Words());
}

TEST(Completion, KnowsFiles) {
  const TestFolder folder;
  folder.file("a.def", "");
  folder.file("a b.dat-s", "");
  folder.file("-odd", "");
  EXPECT_EQ(completed(folder, {"a"}), Words({"a.def", "a b.dat-s"}));
  for (const char* option : {"-o", "--output", "--json", "--export-sdpa", "--export-sdpa-margin"}) {
    EXPECT_EQ(completed(folder, {option, "a."}), Words({"a.def"})) << option;
  }
  EXPECT_EQ(completed(folder, {"-o", "out", "a."}), Words({"a.def"}));
  EXPECT_EQ(completed(folder, {"--json", "=", "a."}), Words({"a.def"}));
  EXPECT_EQ(completed(folder, {"--", "-"}), Words({"-odd"}));
  EXPECT_EQ(completed(folder, {"--", "--format", ""}), Words({"a.def", "a b.dat-s", "-odd"}));
}

}  // namespace
}  // namespace sdpsol
