// Completion of the command grasp.
#include "tests/command/completion.h"

#include "grasp/command/options.h"

namespace {

using sdpsol::TestFolder;
using sdpsol::Words;

Words completed(const TestFolder& folder, const std::vector<std::string>& words) {
  return sdpsol::completed(folder, "grasp", "grasp/command/grasp.bash-completion", words);
}

TEST(GraspCompletion, KnowsEveryOption) {
  const TestFolder folder;
  const char* const words[] = {"grasp", "--help"};
  const Words options = sdpsol::option_words(grasp::command::parse_command_line(2, words).output);
  EXPECT_GE(options.size(), 20U);
  EXPECT_EQ(completed(folder, {"-"}), options);
  EXPECT_EQ(completed(folder, {"--json", "--cont"}), Words({"--contact", "--contacts"}));
  EXPECT_EQ(completed(folder, {"--unknown"}), Words());
}

TEST(GraspCompletion, KnowsWhatOptionsTake) {
  const TestFolder folder;
  folder.file("file", "");
  EXPECT_EQ(completed(folder, {"--ask", ""}),
            Words({"exists", "individual", "point", "friction", "all"}));
  EXPECT_EQ(completed(folder, {"--ask", "=", "p"}), Words({"point"}));
  EXPECT_EQ(completed(folder, {"--solver", "mapfil"}), Words({"mapfile"}));
  for (const char* const option :
       {"-c", "--contact", "-j", "--jobs", "--first-line", "--random", "--seed", "--contacts"})
    EXPECT_EQ(completed(folder, {option, ""}), Words()) << option;
}

TEST(GraspCompletion, KnowsFiles) {
  const TestFolder folder;
  folder.file("a.json", "");
  folder.file("a b.jsonl", "");
  folder.file("-odd", "");
  EXPECT_EQ(completed(folder, {"a"}), Words({"a.json", "a b.jsonl"}));
  for (const char* const option : {"--svg", "--html", "--batch", "-o", "--output", "--plugin"})
    EXPECT_EQ(completed(folder, {option, "a."}), Words({"a.json"})) << option;
  EXPECT_EQ(completed(folder, {"--", "-"}), Words({"-odd"}));
}

}  // namespace
