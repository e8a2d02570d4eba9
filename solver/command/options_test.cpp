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
  EXPECT_EQ(options.result, std::nullopt);
  EXPECT_EQ(options.json, std::nullopt);
  EXPECT_EQ(options.exported, std::nullopt);
  EXPECT_EQ(options.exported_margin, std::nullopt);
  EXPECT_EQ(options.format, Format::kSdpsol);
  EXPECT_FALSE(options.check);
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
  EXPECT_EQ(accepted({"--json", "-", "-"}).json, "-");
}

TEST(CommandLine, TakesNamesThatLookLikeOptionsAfterTwoMinuses) {
  EXPECT_EQ(accepted({"--", "-q"}).definition, "-q");
  EXPECT_EQ(accepted({"--", "a name with blanks"}).definition, "a name with blanks");
}

TEST(CommandLine, TakesNamesForEveryOutput) {
  const Options options =
      accepted({"--json", "j", "--export-sdpa", "e", "--export-sdpa-margin", "m", "-o", "o", "in"});
  EXPECT_EQ(options.result, "o");
  EXPECT_EQ(options.json, "j");
  EXPECT_EQ(options.exported, "e");
  EXPECT_EQ(options.exported_margin, "m");
  EXPECT_EQ(accepted({"-o", "", "in"}).result, "");
}

TEST(CommandLine, PrintsTheResultUnlessSomethingElseIsPrinted) {
  EXPECT_TRUE(prints_result(accepted({"in"})));
  EXPECT_TRUE(prints_result(accepted({"--json", "j", "--export-sdpa", "e", "in"})));
  EXPECT_TRUE(prints_result(accepted({"-o", "-", "in"})));
  EXPECT_TRUE(prints_result(accepted({"-o", "-", "--json", "-", "in"})));
  EXPECT_TRUE(prints_result(accepted({"--check", "in"})));
  EXPECT_FALSE(prints_result(accepted({"-o", "out", "in"})));
  EXPECT_FALSE(prints_result(accepted({"-o", "out", "--json", "-", "in"})));
  EXPECT_FALSE(prints_result(accepted({"--json", "-", "in"})));
  EXPECT_FALSE(prints_result(accepted({"--export-sdpa", "-", "in"})));
  EXPECT_FALSE(prints_result(accepted({"--export-sdpa-margin", "-", "--check", "in"})));
}

TEST(CommandLine, TellsTheFormatByTheNameUnlessItIsGiven) {
  EXPECT_EQ(accepted({"truss1.dat-s"}).format, Format::kSdpa);
  EXPECT_EQ(accepted({".dat-s"}).format, Format::kSdpa);
  EXPECT_EQ(accepted({"truss1.dat-s.def"}).format, Format::kSdpsol);
  EXPECT_EQ(accepted({"truss1.DAT-S"}).format, Format::kSdpsol);
  EXPECT_EQ(accepted({"-"}).format, Format::kSdpsol);
  EXPECT_EQ(accepted({"--format", "sdpsol", "truss1.dat-s"}).format, Format::kSdpsol);
  EXPECT_EQ(accepted({"--format=sdpa", "-"}).format, Format::kSdpa);
}

TEST(CommandLine, TakesTheEnginesThatThereAre) {
  EXPECT_EQ(accepted({"--engine", "auto", "in"}).definition, "in");
  EXPECT_EQ(accepted({"--engine=csdp", "in"}).definition, "in");
}

TEST(CommandLine, SaysWhatIsWrong) {
  EXPECT_EQ(refused({}), "sdpsol: DEFINITION is required");
  EXPECT_EQ(refused({"-q"}), "sdpsol: DEFINITION is required");
  EXPECT_EQ(refused({"--bogus"}), "sdpsol: The following argument was not expected: --bogus");
  EXPECT_EQ(refused({"-x", "in"}), "sdpsol: The following argument was not expected: -x");
  EXPECT_EQ(refused({"in", "more"}), "sdpsol: The following argument was not expected: more");
  EXPECT_EQ(refused({"in", "-o"}), "sdpsol: --output: 1 required FILE missing");
  EXPECT_EQ(refused({"-o", "out"}), "sdpsol: DEFINITION is required");
  EXPECT_EQ(refused({"-o", "a", "-o", "b", "in"}),
            "sdpsol: --output: At Most 1 required but received 2");
  EXPECT_EQ(refused({"--json"}), "sdpsol: --json: 1 required FILE missing");
  EXPECT_EQ(refused({"--export-sdpa", "a", "--export-sdpa", "b", "in"}),
            "sdpsol: --export-sdpa: At Most 1 required but received 2");
  EXPECT_EQ(refused({"--format", "text", "in"}), "sdpsol: --format: 'text' is not sdpsol or sdpa");
  EXPECT_EQ(refused({"--engine", "fast", "in"}),
            "sdpsol: --engine: 'fast' is not auto or cones or csdp");
  for (const char* output : {"-o", "--json"}) {
    EXPECT_EQ(refused({"--check", output, "out", "in"}),
              "sdpsol: --check writes no result, -o and --json have no place beside it");
  }
  EXPECT_EQ(refused({"--check=no", "in"}), "sdpsol: check was given a disallowed flag override");
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
              "  -o,--output FILE            Result file, \"-\" for standard output: the default,\n"
              "                              unless another output goes there\n"
              "  --json FILE                 Write everything about the result as JSON\n"
              "  --check                     Read the definition, say what it holds, solve "
              "nothing\n"
              "  --format NAME               What the definition is written in: sdpsol or sdpa\n"
              "                              (default: sdpa if its name ends in .dat-s)\n"
              "  --export-sdpa FILE          Write the problem in the SDPA sparse format, then go "
              "on\n"
              "  --export-sdpa-margin FILE   Write the search for the largest margin likewise\n"
              "  --engine NAME               Who proposes answers: auto, cones or csdp\n"
              "                              (default: auto, cones for small blocks and csdp "
              "where that is not enough)\n"
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
