// What surrounds a run and must not change or spoil its result: limits on
// memory, files and locales of whoever started it.
#include <gtest/gtest.h>

#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

using Names = std::vector<std::string>;

/// Runs under a limit on addresses in KiB; nothing but a whole result or an
/// apology may come of it. Returns the apology.
std::string run_in_little_memory(const TestFolder& folder, int kib) {
  folder.file("out", "stale");
  const Ended ended =
      run_line(folder, "ulimit -v " + std::to_string(kib) + "; timeout 100 $S -q -o out in");
  EXPECT_EQ(ended.output, "");
  if (ended.status == 0) {
    EXPECT_EQ(ended.error, "");
    EXPECT_EQ(folder.names(), Names({"in", "out"}));
    EXPECT_NE(content_of(folder.path("out")), "stale");
  } else {
    EXPECT_EQ(ended.status, 4) << "with " << kib << " KiB";
    EXPECT_EQ(folder.names(), Names({"in"}));
  }
  return ended.error;
}

TEST(LittleMemory, EndsInAResultOrAnApologyAtEveryStage) {
  if (!kLimitsMemory) GTEST_SKIP() << "only of the static command";
  const TestFolder folder;
  folder.file("in", long_definition(25));
  for (int kib = 40'000; kib < 300'000; kib += 20'000) {
    const std::string apology = run_in_little_memory(folder, kib);
    EXPECT_TRUE(apology.empty() || apology == "sdpsol: out of memory\n" ||
                apology == "sdpsol: the engine ended the program, probably out of memory\n")
        << apology;
  }
  EXPECT_EQ(run_in_little_memory(folder, 100'000), "sdpsol: out of memory\n");
  EXPECT_EQ(run_in_little_memory(folder, 1'000'000), "");
}

TEST(LittleMemory, IsReportedWhereTheEngineEndsTheProgram) {
  if (!kLimitsMemory) GTEST_SKIP() << "only of the static command";
  const TestFolder folder;
  // 200 MB of the engine's for 10 of everybody else's.
  folder.file("in", "variable x(5000,1);\nx > 0;\ns = sum(x);\ns < 10;\n");
  EXPECT_EQ(run_in_little_memory(folder, 300'000),
            "sdpsol: the engine ended the program, probably out of memory\n");
}

TEST(WorkingDirectory, MayHoldAParameterFileOfTheEngine) {
  const TestFolder folder;
  folder.file("in", "variable x, y;\nx > 1;\n[y,x;x,2] > 0;\nminimize o = x + y;\n");
  const Ended before = run_line(folder, "$S in");
  ASSERT_EQ(before.status, 0);
  folder.file("param.csdp",
              "axtol=1.0e-1\natytol=1.0e-1\nobjtol=1.0e-1\npinftol=1.0e1\ndinftol=1.0e1\n"
              "maxiter=1\nminstepfrac=0.90\nmaxstepfrac=0.97\nminstepp=1.0e-1\nminstepd=1.0e-1\n"
              "usexzgap=1\ntweakgap=0\naffine=0\nprintlevel=3\nperturbobj=1\nfastmode=1\n");
  const Ended after = run_line(folder, "$S in");
  EXPECT_EQ(after.status, 0);
  EXPECT_EQ(after.output, before.output);
  EXPECT_EQ(after.error, "");
}

TEST(Locale, ChangesNothing) {
  const TestFolder folder;
  folder.file("in", "variable x;\nx > 1.5;\nx < 2.25;\nmaximize o = x;\n");
  const std::string compile =
      "localedef -i de_DE -f UTF-8 ./de_DE.UTF-8 >/dev/null 2>&1 && "
      "LOCPATH=$PWD LC_ALL=de_DE.UTF-8 locale decimal_point";
  if (run_line(folder, compile).output != ",\n") {
    GTEST_SKIP() << "no locale with decimal commas can be made here";
  }
  const Ended plain = run_line(folder, "LC_ALL=C $S in");
  const Ended german = run_line(folder, "LOCPATH=$PWD LC_ALL=de_DE.UTF-8 $S in");
  ASSERT_EQ(plain.status, 0);
  EXPECT_NE(plain.output.find("\nobjective = 2.2"), std::string::npos) << plain.output;
  EXPECT_EQ(german.status, 0);
  EXPECT_EQ(german.output, plain.output);
  EXPECT_EQ(german.error, "");
}

}  // namespace
}  // namespace sdpsol
