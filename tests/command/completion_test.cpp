// Completion of the command sdpsol.
#include "tests/command/completion.h"

#include "solver/command/options.h"

namespace sdpsol {
namespace {

Words completed(const TestFolder& folder, const std::vector<std::string>& words) {
  return sdpsol::completed(folder, "sdpsol", "solver/command/sdpsol.bash-completion", words);
}

Words options_of_help() {
  const char* const words[] = {"sdpsol", "--help"};
  return option_words(parse_command_line(2, words).output);
}

TEST(Completion, KnowsEveryOption) {
  const TestFolder folder;
  const Words options = options_of_help();
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
