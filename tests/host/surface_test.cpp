// What surrounds zelrun: its manual page and its completion, against the program.
#include "host/command/options.h"
#include "tests/command/completion.h"

namespace {

using sdpsol::TestFolder;
using sdpsol::Words;

const char* const kManual = SDPSOL_SOURCE_DIR "/docs/zelrun.1";

// The options in the help of the program, or of one of its commands.
Words options_of(const char* command) {
  const std::vector<const char*> all = command == nullptr
                                           ? std::vector<const char*>{"zelrun", "--help"}
                                           : std::vector<const char*>{"zelrun", command, "--help"};
  return sdpsol::option_words(
      zelrun::parse_command_line(static_cast<int>(all.size()), all.data()).output);
}

Words completed(const TestFolder& folder, const std::vector<std::string>& words) {
  return sdpsol::completed(folder, "zelrun", "host/command/zelrun.bash-completion", words);
}

TEST(ZelrunManual, HasNothingThatItsFormatterComplainsAbout) {
  EXPECT_EQ(sdpsol::complaints_about(kManual), "");
}

TEST(ZelrunManual, HasEveryOptionAndExitStatus) {
  const std::string page = sdpsol::manual_page(kManual);
  Words names = options_of(nullptr);
  for (const char* const command : {"list", "run", "check"}) names.merge(options_of(command));
  EXPECT_EQ(names,
            Words({"-h", "--help", "--version", "-p", "--plugins", "--json", "--time-limit"}));
  for (const std::string& name : names) EXPECT_TRUE(sdpsol::has_option(page, name)) << name;
  for (int status = zelhost::kExitDone; status <= zelhost::kExitInternal; ++status)
    EXPECT_TRUE(sdpsol::has_status(page, status)) << status;
}

TEST(ZelrunCompletion, KnowsCommandsAndTheirOptions) {
  const TestFolder folder;
  EXPECT_EQ(completed(folder, {"c"}), Words({"check"}));
  Words first = options_of(nullptr);
  EXPECT_EQ(completed(folder, {"-"}), first);
  first.merge(Words({"list", "run", "check"}));
  EXPECT_EQ(completed(folder, {""}), first);
  for (const char* const command : {"list", "run", "check"})
    EXPECT_EQ(completed(folder, {command, "-"}), options_of(command)) << command;
}

TEST(ZelrunCompletion, KnowsFilesAndFolders) {
  const TestFolder folder;
  folder.file("a.json", "");
  std::filesystem::create_directory(folder.path("afolder"));
  EXPECT_EQ(completed(folder, {"run", "a"}), Words({"a.json", "afolder"}));
  EXPECT_EQ(completed(folder, {"run", "list", "a."}), Words({"a.json"}));
  EXPECT_EQ(completed(folder, {"list", "-p", "a"}), Words({"afolder"}));
  EXPECT_EQ(completed(folder, {"check", "--plugins", "=", "a"}), Words({"afolder"}));
  EXPECT_EQ(completed(folder, {"check", "--time-limit", ""}), Words());
  EXPECT_EQ(completed(folder, {"run", "--", "a."}), Words({"a.json"}));
}

}  // namespace
