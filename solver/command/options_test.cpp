// The command line: every flag, every way to use it wrongly, whole texts.
#include "solver/command/options.h"

#include <gtest/gtest.h>

#include <vector>

namespace sdpsol {
namespace {

ParsedCommandLine parse(std::vector<const char*> words) {
  words.insert(words.begin(), "sdpsol");
  return parse_command_line(static_cast<int>(words.size()), words.data());
}

Options accepted(const std::vector<const char*>& words) {
  const ParsedCommandLine parsed = parse(words);
  EXPECT_EQ(parsed.status, kExitVerdict);
  EXPECT_EQ(parsed.output, "");
  EXPECT_EQ(parsed.error, "");
  return parsed.options.value_or(Options{});
}

/// The complaint without the hint that follows every one.
std::string refused(const std::vector<const char*>& words) {
  const ParsedCommandLine parsed = parse(words);
  EXPECT_FALSE(parsed.options.has_value());
  EXPECT_EQ(parsed.status, kExitUsage);
  EXPECT_EQ(parsed.output, "");
  const std::string hint = "\nTry 'sdpsol --help'.\n";
  const std::size_t at = parsed.error.size() - std::min(hint.size(), parsed.error.size());
  EXPECT_EQ(parsed.error.substr(at), hint);
  return parsed.error.substr(0, at);
}

TEST(CommandLine, NeedsNothingButADefinition) {
  const Options options = accepted({"a.def"});
  EXPECT_EQ(options.definition, "a.def");
  EXPECT_EQ(options.result, "-");
  EXPECT_FALSE(options.quiet);
}

TEST(CommandLine, TakesWhatHostsWrite) {
  const Options options = accepted({"-q", "-o", "sdpsol.out", "sdpsol.in"});
  EXPECT_EQ(options.definition, "sdpsol.in");
  EXPECT_EQ(options.result, "sdpsol.out");
  EXPECT_TRUE(options.quiet);
}

TEST(CommandLine, TakesLongFormsInAnyOrder) {
  const Options options = accepted({"in", "--output=out", "--quiet"});
  EXPECT_EQ(options.definition, "in");
  EXPECT_EQ(options.result, "out");
  EXPECT_TRUE(options.quiet);
  EXPECT_EQ(accepted({"--output", "out", "in"}).result, "out");
  EXPECT_EQ(accepted({"-oout", "in"}).result, "out");
  EXPECT_TRUE(accepted({"-q", "-q", "in"}).quiet);
}

TEST(CommandLine, TakesAMinusForTheStandardStreams) {
  const Options options = accepted({"-o", "-", "-"});
  EXPECT_EQ(options.definition, "-");
  EXPECT_EQ(options.result, "-");
}

TEST(CommandLine, TakesNamesThatLookLikeOptionsAfterTwoMinuses) {
  EXPECT_EQ(accepted({"--", "-q"}).definition, "-q");
  EXPECT_EQ(accepted({"--", "a name with blanks"}).definition, "a name with blanks");
}

TEST(CommandLine, SaysWhatIsWrong) {
  EXPECT_EQ(refused({}), "sdpsol: DEFINITION is required");
  EXPECT_EQ(refused({"-q"}), "sdpsol: DEFINITION is required");
  EXPECT_EQ(refused({"-x", "in"}), "sdpsol: The following argument was not expected: -x");
  EXPECT_EQ(refused({"in", "more"}), "sdpsol: The following argument was not expected: more");
  EXPECT_EQ(refused({"in", "-o"}), "sdpsol: --output: 1 required FILE missing");
  EXPECT_EQ(refused({"-o", "out"}), "sdpsol: DEFINITION is required");
  EXPECT_EQ(refused({"-o", "a", "-o", "b", "in"}),
            "sdpsol: --output: At Most 1 required but received 2");
  EXPECT_EQ(refused({"--quiet=no", "in"}), "sdpsol: quiet was given a disallowed flag override");
}

TEST(CommandLine, Helps) {
  for (const char* flag : {"-h", "--help"}) {
    const ParsedCommandLine parsed = parse({flag});
    EXPECT_FALSE(parsed.options.has_value());
    EXPECT_EQ(parsed.status, kExitVerdict);
    EXPECT_EQ(parsed.error, "");
    EXPECT_EQ(parsed.output,
              "Solves the semidefinite program of a definition file and writes a result file.\n"
              "The verdict is FEASIBLE, INFEASIBLE or FEASIBILITY CANNOT BE DETERMINED; the first\n"
              "two are proven.\n"
              "Usage: sdpsol [OPTIONS] DEFINITION\n"
              "\n"
              "Positionals:\n"
              "  DEFINITION REQUIRED         Definition file, \"-\" for standard input\n"
              "\n"
              "Options:\n"
              "  -h,--help                   Print this help message and exit\n"
              "  -q,--quiet                  Print nothing but warnings and errors\n"
              "  -o,--output FILE            Result file, \"-\" for standard output (the default)\n"
              "  --version                   Display program version information and exit\n"
              "\n"
              "Exit status: 0 a verdict was written, 1 error in the definition, 2 wrong usage,\n"
              "3 a file could not be read or written, 4 out of memory or an internal error.\n");
  }
}

TEST(CommandLine, TellsItsVersion) {
  const ParsedCommandLine parsed = parse({"--version"});
  EXPECT_FALSE(parsed.options.has_value());
  EXPECT_EQ(parsed.status, kExitVerdict);
  EXPECT_EQ(parsed.output, "sdpsol 0.1.0\n");
  EXPECT_EQ(parsed.error, "");
}

}  // namespace
}  // namespace sdpsol
