// The command line of zelrun.
#include "host/command/options.h"

#include <gtest/gtest.h>

namespace zelrun {
namespace {

zelhost::ParsedCommandLine<Options> parse(std::vector<const char*> words) {
  words.insert(words.begin(), "zelrun");
  return parse_command_line(static_cast<int>(words.size()), words.data());
}

Options accepted(const std::vector<const char*>& words) {
  const auto parsed = parse(words);
  EXPECT_EQ(parsed.status, zelhost::kExitDone);
  EXPECT_EQ(parsed.output, "");
  EXPECT_EQ(parsed.error, "");
  return parsed.options.value_or(Options{});
}

std::string refused(const std::vector<const char*>& words) {
  const auto parsed = parse(words);
  EXPECT_FALSE(parsed.options.has_value());
  EXPECT_EQ(parsed.status, zelhost::kExitUsage);
  EXPECT_EQ(parsed.output, "");
  return parsed.error;
}

const std::string kFooter =
    "\n"
    "A network file decides which plug-ins are loaded and which texts they are given, and\n"
    "plug-ins may hand texts to the shell: a network file is as powerful as a script.\n"
    "\n"
    "Exit status: 0 done, 1 a network or a plug-in has an error, or a method or a check\n"
    "failed, 2 wrong usage, 3 a file could not be read or written, 4 out of memory or an\n"
    "internal error.\n";

TEST(CommandLine, TakesAPluginToList) {
  EXPECT_EQ(std::get<ListOptions>(accepted({"list", "sdpsol"}).what).plugin, "sdpsol");
}

TEST(CommandLine, TakesANetworkToRun) {
  const Options plain = accepted({"run", "a.json"});
  EXPECT_EQ(std::get<RunOptions>(plain.what).network, "a.json");
  EXPECT_FALSE(std::get<RunOptions>(plain.what).json);
  EXPECT_EQ(plain.plugin_folders, Folders{});
  EXPECT_TRUE(std::get<RunOptions>(accepted({"run", "--json", "a.json"}).what).json);
}

TEST(CommandLine, TakesFoldersOfPlugins) {
  EXPECT_EQ(accepted({"run", "-p", "a", "--plugins", "b", "x.json"}).plugin_folders,
            (Folders{"a", "b"}));
  EXPECT_EQ(accepted({"list", "-p", "a", "x"}).plugin_folders, Folders{"a"});
  EXPECT_EQ(accepted({"check", "x", "-p", "a"}).plugin_folders, Folders{"a"});
}

TEST(CommandLine, TakesAPluginToCheckAndATimeLimit) {
  EXPECT_EQ(std::get<CheckOptions>(accepted({"check", "x"}).what).time_limit, 60);
  EXPECT_EQ(std::get<CheckOptions>(accepted({"check", "--time-limit", "1.5", "x"}).what).time_limit,
            1.5);
}

TEST(CommandLine, SaysWhatIsWrong) {
  const std::string hint = "\nTry 'zelrun --help'.\n";
  EXPECT_EQ(refused({}), "zelrun: A subcommand is required" + hint);
  EXPECT_EQ(refused({"run"}), "zelrun: NETWORK is required" + hint);
  EXPECT_EQ(refused({"list"}), "zelrun: PLUGIN is required" + hint);
  EXPECT_EQ(refused({"walk"}), "zelrun: A subcommand is required" + hint);
  EXPECT_EQ(refused({"run", "a", "b"}),
            "zelrun: The following argument was not expected: b" + hint);
  EXPECT_EQ(refused({"run", "--jsno", "a"}),
            "zelrun: The following argument was not expected: --jsno" + hint);
  for (const char* const limit : {"0", "-1", "nan", "inf", "1s", "100000"}) {
    EXPECT_EQ(refused({"check", "x", "--time-limit", limit}),
              std::string("zelrun: --time-limit: takes seconds, from 0.001 to 86400, not ") +
                  limit + hint);
  }
}

TEST(CommandLine, Helps) {
  const auto parsed = parse({"--help"});
  EXPECT_FALSE(parsed.options.has_value());
  EXPECT_EQ(parsed.status, zelhost::kExitDone);
  EXPECT_EQ(parsed.error, "");
  EXPECT_EQ(parsed.output,
            "Loads plug-ins of computing units and runs networks of them.\n"
            "Usage: zelrun [OPTIONS] SUBCOMMAND\n"
            "\n"
            "Options:\n"
            "  -h,--help                   Print this help message and exit\n"
            "  --version                   Display program version information and exit\n"
            "\n"
            "Subcommands:\n"
            "  list                        Show a plug-in's icons, methods and ports with their "
            "texts\n"
            "  run                         Run a network and print its outputs\n"
            "  check                       Check that a plug-in does what a host expects\n" +
                kFooter);
}

TEST(CommandLine, HelpsWithRun) {
  EXPECT_EQ(
      parse({"run", "--help"}).output,
      "Run a network and print its outputs\n"
      "Usage: zelrun run [OPTIONS] NETWORK\n"
      "\n"
      "Positionals:\n"
      "  NETWORK REQUIRED            Network file\n"
      "\n"
      "Options:\n"
      "  -h,--help                   Print this help message and exit\n"
      "  --json                      Print the outputs as JSON; what plug-ins print goes to "
      "standard error\n"
      "  -p,--plugins FOLDER ...     Look for plug-ins in FOLDER, after the network's folder; "
      "may be given several times\n" +
          kFooter);
}

TEST(CommandLine, TellsItsVersion) {
  EXPECT_EQ(parse({"--version"}).output, "zelrun 0.1.0\n");
}

}  // namespace
}  // namespace zelrun
