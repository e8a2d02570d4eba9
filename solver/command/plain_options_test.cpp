// The short way through command lines against the whole way.
#include "solver/command/plain_options.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace sdpsol {
namespace {

std::vector<const char*> whole(std::vector<const char*> words) {
  words.insert(words.begin(), "sdpsol");
  return words;
}

std::optional<Options> plain(const std::vector<const char*>& words) {
  const auto line = whole(words);
  return read_plain_options(static_cast<int>(line.size()), line.data());
}

TEST(PlainOptions, ReadsWhatHostsWrite) {
  const auto options = plain({"-q", "-o", "/tmp/sdpsol.out", "sdpsol.in"});
  ASSERT_TRUE(options.has_value());
  EXPECT_EQ(options->definition, "sdpsol.in");
  EXPECT_EQ(options->result, "/tmp/sdpsol.out");
  EXPECT_TRUE(options->quiet);
  EXPECT_TRUE(plain({"a.def"}).has_value());
  EXPECT_TRUE(plain({"--json", "j", "a.def"}).has_value());
}

TEST(PlainOptions, LeavesEverythingElseToTheWholeWay) {
  EXPECT_FALSE(plain({}).has_value());
  EXPECT_FALSE(plain({"--help"}).has_value());
  EXPECT_FALSE(plain({"-o", "out"}).has_value());
  EXPECT_FALSE(plain({"in", "-o"}).has_value());
  EXPECT_FALSE(plain({"in", "-o", ""}).has_value());
  EXPECT_FALSE(plain({"-"}).has_value());
  EXPECT_FALSE(plain({"in", "in2"}).has_value());
  EXPECT_FALSE(plain({"--check", "in"}).has_value());
  EXPECT_FALSE(plain({"problem.dat-s"}).has_value());
}

TEST(PlainOptions, AgreesWithTheWholeWayWhereItReads) {
  const std::vector<const char*> words = {
      "-q",    "--quiet",      "-o",      "--output", "--json", "in",      "out",
      "./a b", "/x/y",         "_z",      "0",        "-",      "--",      "-qo",
      "-oout", "--output=out", "a=b",     "[a,b]",    "'q'",    "",        "a.dat-s",
      "--csv", "++",           "--check", "%const",   "--help", "--json=x"};
  std::mt19937 random(7);
  int read = 0;
  for (int i = 0; i < 20000; ++i) {
    std::vector<const char*> line = {"sdpsol"};
    const unsigned long count = random() % 6;
    for (unsigned long k = 0; k < count; ++k) line.push_back(words[random() % words.size()]);
    const auto options = read_plain_options(static_cast<int>(line.size()), line.data());
    if (!options) continue;
    ++read;
    const ParsedCommandLine parsed = parse_command_line(static_cast<int>(line.size()), line.data());
    ASSERT_TRUE(parsed.options.has_value()) << parsed.error;
    EXPECT_EQ(*options, *parsed.options) << ::testing::PrintToString(line);
  }
  EXPECT_GT(read, 500);
}

}  // namespace
}  // namespace sdpsol
