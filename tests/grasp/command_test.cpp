// The command grasp as users start it: what it prints, writes and ends with, and
// what its manual page says of that.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "grasp/command/options.h"
#include "tests/command/manual_page.h"
#include "tests/support/terminal.h"

namespace {

using Json = nlohmann::ordered_json;
using sdpsol::content_of;
using sdpsol::Ended;
using sdpsol::run_line;
using sdpsol::TestFolder;

const std::string kExamples = SDPSOL_SOURCE_DIR "/examples/grasps/";
const char* const kManual = SDPSOL_SOURCE_DIR "/docs/grasp.1";

// $G is the command, $E the folder of examples.
Ended grasp(const TestFolder& folder, const std::string& line) {
  return run_line(folder, "G=" SDPSOL_BIN_DIR "/grasp\nE=" + kExamples + "\n" + line);
}

// Standard error of a line that must fail with the status.
std::string failure(const std::string& line, int status) {
  const TestFolder folder;
  const Ended ended = grasp(folder, line);
  EXPECT_EQ(ended.status, status) << line;
  EXPECT_EQ(ended.output, "") << line;
  return ended.error;
}

TEST(GraspCommand, PrintsATableForPeople) {
  const TestFolder folder;
  const Ended ended = grasp(folder, "$G --ask all $E/pinch.json | grep -v '^solved in'");
  EXPECT_EQ(ended.output,
            "two-finger pinch of a box\n"
            "question \"all\"\n"
            "FEASIBLE\n"
            "grasp map 6 x 6, rank 5, internal forces of 1 dimension; no force closure\n"
            "\n"
            "force [N]   normal  tangent 1  tangent 2  inside cone  bounds  epsilon   world x"
            "       y       z\n"
            "0 thumb    10.0000     0.0000     0.0000       5.0000  0.0000   5.0000   10.0000"
            "  0.0000  0.0000\n"
            "1 index    10.0000     0.0000     0.0000       8.0000  0.0000   8.0000  -10.0000"
            "  0.0000  0.0000\n"
            "\n"
            "objective 13.0000 N: epsilons with friction / (contacts - 1) + the others\n"
            "mean epsilon 6.5000 N\n"
            "balance: force within 0 N, torque within 0 N m\n");
  EXPECT_EQ(ended.error, "");
}

TEST(GraspCommand, PrintsJsonForProgramsWithTimesOnlyWhereTheyAreWanted) {
  const TestFolder folder;
  const Ended plain = grasp(folder, "$G --json --ask point -c index $E/pinch.json");
  const Json json = Json::parse(plain.output);
  EXPECT_EQ(json["about"], Json::array({1}));
  EXPECT_NEAR(json["objective"].get<double>(), 8, 1e-4);
  EXPECT_FALSE(json.contains("times"));
  EXPECT_EQ(grasp(folder, "$G --json --ask point -c 1 $E/pinch.json").output, plain.output);

  const Ended timed = grasp(folder, "$G --json --times --ask point -c index $E/pinch.json");
  EXPECT_GT(Json::parse(timed.output)["times"]["solving"].get<double>(), 0);
}

TEST(GraspCommand, ReadsStandardInput) {
  const TestFolder folder;
  EXPECT_EQ(grasp(folder, "$G --json - <$E/ball.json").output,
            grasp(folder, "$G --json $E/ball.json").output);
  EXPECT_EQ(failure("echo '{}' | $G -", 1),
            "grasp: error: standard input: /: the key \"contacts\" is missing\n");
}

TEST(GraspCommand, AnswersWhereThereIsNoForce) {
  const TestFolder folder;
  const Ended ended = grasp(folder, "$G $E/tight_bounds.json");
  EXPECT_EQ(ended.status, 0);
  EXPECT_NE(ended.output.find("INFEASIBLE\n"), std::string::npos);
  EXPECT_NE(ended.output.find("normal force of strong above 5 N"), std::string::npos);
  EXPECT_NE(ended.output.find("normal force of weak below 3 N"), std::string::npos);
}

TEST(GraspCommand, CountsTheSecondsOfALongSolveOnATerminal) {
  const std::string solver = "'sleep 1.4; " SDPSOL_BIN_DIR "/sdpsol'";
  const std::string text = test_support::OnATerminal(SDPSOL_BIN_DIR "/grasp --solver " + solver +
                                                     " " + kExamples + "pinch.json >/dev/null")
                               .until_the_end();
  EXPECT_TRUE(std::regex_search(text, std::regex("\r\"exists\" of 2 contacts  [1-9]\\.[0-9] s ")))
      << text;
  EXPECT_EQ(text.substr(text.size() - 4), "\r\033[K");
}

TEST(GraspCommand, ShowsHowFarABatchHasComeOnATerminal) {
  const TestFolder folder;
  const std::string solver = " --solver 'sleep 0.3; " SDPSOL_BIN_DIR "/sdpsol' ";
  const std::string text =
      test_support::OnATerminal("cd " + folder.path() +
                                "; " SDPSOL_BIN_DIR "/grasp --random 3 >in; " SDPSOL_BIN_DIR
                                "/grasp --jobs 1" +
                                solver + "--batch in >/dev/null")
          .until_the_end();
  const std::regex line("\r[12] grasps  [0-9]+ %  [0-9.]+ per second  0:0[0-9] left\033\\[K");
  EXPECT_TRUE(std::regex_search(text, line)) << text;
}

TEST(GraspCommand, LeavesNothingBehind) {
  const TestFolder folder;
  const Ended ended = grasp(folder,
                            "mkdir 'a b' && export TMPDIR=\"$PWD/a b\"\n"
                            "$G $E/ball.json >/dev/null && ls . 'a b'");
  EXPECT_EQ(ended.output, ".:\na b\n\na b:\n") << ended.error;
}

TEST(GraspCommand, DrawsPicturesWhereItStandsWhateverTheScratchFolder) {
  const TestFolder folder;
  const Ended ended =
      grasp(folder, "mkdir out && $G --svg out/a.svg --html b.html $E/ball.json >/dev/null");
  EXPECT_EQ(ended.status, 0) << ended.error;
  EXPECT_EQ(content_of(folder.path("out/a.svg")).substr(0, 5), "<?xml");
  EXPECT_EQ(content_of(folder.path("b.html")).substr(0, 15), "<!DOCTYPE html>");
}

TEST(GraspCommand, ReplacesAPictureAsAWhole) {
  const TestFolder folder;
  const Ended ended = grasp(folder,
                            "echo old >a.svg && ln -s a.svg link\n"
                            "$G --svg link $E/ball.json >/dev/null && test -L link && ls\n"
                            "$G --svg missing/a.svg $E/ball.json\n"
                            "echo $?\n"
                            "$G --svg /dev/full $E/ball.json\n"
                            "echo $?");
  EXPECT_EQ(ended.output, "a.svg\nlink\n3\n3\n");
  EXPECT_EQ(ended.error,
            "grasp: error: missing/a.svg: No such file or directory\n"
            "grasp: error: /dev/full: No space left on device\n");
  EXPECT_EQ(content_of(folder.path("a.svg")).substr(0, 5), "<?xml");
}

TEST(GraspCommand, GivesANewPictureTheUsualRightsAndAnOldOneItsOwn) {
  const TestFolder folder;
  const Ended ended = grasp(folder,
                            "touch old.svg && chmod 604 old.svg && umask 027\n"
                            "$G --svg old.svg --html new.html $E/ball.json >/dev/null\n"
                            "stat --format '%a' old.svg new.html");
  EXPECT_EQ(ended.output, "604\n640\n") << ended.error;
}

TEST(GraspCommand, DrawsAPictureWhoseNameIsAsLongAsNamesCanBe) {
  const TestFolder folder;
  const std::string name = std::string(251, 'a') + ".svg";
  const Ended ended = grasp(folder, "$G --svg " + name + " $E/ball.json >/dev/null");
  EXPECT_EQ(ended.status, 0) << ended.error;
  EXPECT_EQ(folder.names(), std::vector<std::string>{name});
}

TEST(GraspCommand, FollowsALinkToAPictureThatIsNotThereYet) {
  const TestFolder folder;
  const Ended ended = grasp(folder,
                            "ln -s real.svg link && $G --svg link $E/ball.json >/dev/null\n"
                            "test -L link && head -c 5 real.svg");
  EXPECT_EQ(ended.output, "<?xml") << ended.error;
}

TEST(GraspCommand, SurvivesAPipeWhoseReaderLeaves) {
  const TestFolder folder;
  const Ended ended = grasp(folder,
                            "mkfifo pipe; head -c 1 pipe >/dev/null & $G --html pipe $E/ball.json\n"
                            "echo $?");
  EXPECT_EQ(ended.output, "3\n");
  EXPECT_EQ(ended.error, "grasp: error: pipe: Broken pipe\n");
}

TEST(GraspCommand, KeepsPicturesOutOfStandardOutput) {
  EXPECT_EQ(failure("$G --svg /dev/stdout $E/ball.json", 2),
            "grasp: /dev/stdout: --svg takes the name of a file\n");
}

TEST(GraspCommand, FailsWhereStandardOutputIsClosed) {
  EXPECT_EQ(failure("$G $E/ball.json >&-", 3),
            "grasp: error: standard output: Bad file descriptor\n");
  EXPECT_EQ(failure("$G --random 2 | $G -q --batch - >&-", 3),
            "grasp: error: standard output: Bad file descriptor\n");
}

TEST(GraspCommand, EndsABatchWhereItsFilesHaveNoRoom) {
  const TestFolder folder;
  const Ended ended = grasp(folder,
                            "export TMPDIR=$PWD; $G --random 3 >lines\n"
                            "(ulimit -f 0; exec $G -q --batch lines) 2>&1 | cat");
  EXPECT_EQ(ended.output.substr(0, 32), "grasp: error: the scratch folder");
  EXPECT_NE(ended.output.find(" cannot be written: File too large\n"), std::string::npos)
      << ended.output;
}

TEST(GraspCommand, DoesNotProveWhatOnlyTheRoundingOfItsTextsForbids) {
  const TestFolder folder;
  const Ended ended =
      grasp(folder,
            "echo '{\"friction\": 0.5, \"contacts\": [\n"
            "{\"point\": [-1,0,0], \"normal\": [1,0,0], \"bounds\": {\"tangential_1\":"
            " [-5,5], \"tangential_2\": [-5,5], \"normal\": [123456.2,123456.4]}},\n"
            "{\"point\": [1,0,0], \"normal\": [-1,0,0], \"max_force\": 150000}]}' |\n"
            "$G - | sed -n 2,3p");
  EXPECT_EQ(ended.output,
            "FEASIBILITY CANNOT BE DETERMINED\n"
            "borderline: no internal force beyond the precision of the data\n");
}

// Of an answer of the command, the lines that begin with "note: ".
std::string notes(const std::string& line) {
  const TestFolder folder;
  return grasp(folder, line + " | grep ^note:").output;
}

TEST(GraspCommand, SaysWhatLimitsAnAnswer) {
  const std::string strong = "sed 's/\"max_force\": [0-9]*/\"max_force\": 1e6/' $E/pinch.json | ";
  EXPECT_EQ(notes(strong + "$G --ask all -"),
            "note: the objective is limited only by how far the unit looks, up to forces of about "
            "2e5 N; with forces in a larger unit it may be larger\n");
  const std::string nearly_opposite = R"(echo '{"max_force": 10, "contacts": [
      {"type": "frictionless", "point": [-0.02, 0, 0], "normal": [1, 0, 0]},
      {"type": "frictionless", "point": [0.02, 1e-9, 0], "normal": [-1, 0, 0]}]}' | )";
  EXPECT_EQ(notes(nearly_opposite + "$G -"),
            "note: a small singular value of the grasp map was taken for 0: the forces balance to "
            "the residual that is shown\n");
}

TEST(GraspCommand, ProvesThatOthersCannotJoinTwoThatSqueeze) {
  const std::string file = SDPSOL_SOURCE_DIR "/tests/grasps/squeeze_alone.json";
  EXPECT_EQ(notes("$G " + file),
            "note: contacts thumb and index can squeeze alone; the others cannot join them\n");
  const TestFolder folder;
  EXPECT_EQ(Json::parse(grasp(folder, "$G --json " + file).output)["verdict"], "INFEASIBLE");
}

TEST(GraspCommand, NeverDrawsOverItsInputOrAnotherPicture) {
  const TestFolder folder;
  const Ended ended = grasp(folder,
                            "cp $E/ball.json a.json; ln a.json b.json\n"
                            "$G --svg b.json a.json; echo $?; cmp a.json $E/ball.json\n"
                            "$G --svg a --html ./a a.json; echo $?; ls");
  EXPECT_EQ(ended.output, "2\n2\na.json\nb.json\n");
  EXPECT_EQ(ended.error,
            "grasp: b.json: --svg would be written over the grasp\n"
            "grasp: ./a: --html would be written over --svg\n");
}

TEST(GraspCommand, SaysWhatIsWrongWithItsFiles) {
  EXPECT_EQ(failure("$G missing.json", 3),
            "grasp: error: missing.json: No such file or directory\n");
  EXPECT_EQ(failure("$G .", 3), "grasp: error: .: Is a directory\n");
  EXPECT_EQ(failure("echo '{,}' >a.json; $G a.json", 1).substr(0, 26),
            "grasp: error: a.json:1:2: ");
  EXPECT_EQ(failure("$G --plugin /nowhere/unit.so $E/ball.json", 3),
            "grasp: error: /nowhere/unit.so: no such file\n");
  EXPECT_EQ(failure("TMPDIR=/proc $G $E/ball.json", 3),
            "grasp: error: a scratch folder in /proc: No such file or directory\n");
  EXPECT_EQ(failure("$G --batch .", 3), "grasp: error: .: Is a directory\n");
  const TestFolder folder;
  EXPECT_EQ(grasp(folder, "$G $E/ball.json >/dev/full").status, 3);
}

TEST(GraspCommand, SaysWhatIsWrongWithTheQuestion) {
  EXPECT_EQ(failure("$G --ask point $E/pinch.json", 1),
            "grasp: error: the question \"point\" takes one contact, not 0\n");
  EXPECT_EQ(failure("$G --ask point -c pinky $E/pinch.json", 1),
            "grasp: error: there is no contact \"pinky\"; there are 0 \"thumb\", 1 \"index\"\n");
  EXPECT_EQ(failure("$G --ask most $E/pinch.json", 2),
            "grasp: --ask: takes exists, individual, point, friction or all, not most\n"
            "Try 'grasp --help'.\n");
}

TEST(GraspCommand, SaysWhatIsWrongWithTheSolver) {
  const auto last_line = [](const std::string& solver) {
    return failure(
        "printf '#!/bin/sh\\n" + solver +
            "\\n' >solver && chmod +x solver\n"
            "$G --solver $PWD/solver $E/pinch.json 2>&1 >/dev/null | tail -1 >&2; exit 1",
        1);
  };
  EXPECT_EQ(last_line("false"),
            "grasp: error: the solver gave no answer: the command could not be run, or ended with "
            "an error (code 2 of the unit)\n");
  EXPECT_EQ(last_line("true"),
            "grasp: error: the solver gave no answer: the command left no result file (code 3 of "
            "the unit)\n");
  EXPECT_EQ(last_line("printf \"FEASIBLE\\n*** Objective value\\nNO\" >$3"),
            "grasp: error: the solver gave no answer: the result could not be read (code 4 of the "
            "unit)\n");
  EXPECT_EQ(last_line("echo nothing >$3"),
            "grasp: error: the unit and the result file contradict each other\n");
}

// A solver that answers with forces of its own: the unit parses what it writes.
Ended with_values(const TestFolder& folder, const std::string& values, const std::string& more) {
  const std::string solver =
      "cat >lying <<'EOF'\n"
      "#!/bin/sh\n"
      "printf 'FEASIBLE\\n\\n*** Objective value\\nNO OBJECTIVE.\\n\\n*** Variables\\n" +
      values +
      "\\n\\n' >\"$3\"\n"
      "EOF\n"
      "chmod +x lying\n";
  return grasp(folder, solver + "$G --solver \"$PWD/lying\" " + more);
}

TEST(GraspCommand, LeavesOpenWhatTheSolverLeavesOpenInEveryBase) {
  const TestFolder folder;
  const Ended ended =
      grasp(folder,
            "printf '#!/bin/sh\\necho x >>asked\\n"
            "printf \"FEASIBILITY CANNOT BE DETERMINED\\\\nno idea\\\\n\\\\n"
            "*** Objective value\\\\nNO OBJECTIVE.\\\\n\\\\n*** Variables\\\\n\\\\n\" "
            ">$3\\n' >solver && chmod +x solver\n"
            "$G --json --solver $PWD/solver $E/ball.json");
  const Json answer = Json::parse(ended.output);
  EXPECT_EQ(answer["verdict"], "FEASIBILITY CANNOT BE DETERMINED") << ended.output;
  EXPECT_EQ(answer["reason"], "no idea");
}

TEST(GraspCommand, BelievesNoForcesThatAreOutsideOfTheirCones) {
  const TestFolder folder;
  const Ended ended = with_values(folder, "z0 = -3", "$E/pinch.json");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.error,
            "grasp: error: the forces that came back are outside of the cone or the bounds of "
            "contact thumb\n");
}

TEST(GraspCommand, CallsForcesBorderlineThatAreInsideByRoundingOnly) {
  const TestFolder folder;
  // The bound of 10 N, and a millionth of it more: sqrt(2) times 10.
  const Ended ended = with_values(folder, "z0 = 14.14215", "--json $E/pinch.json");
  const Json json = Json::parse(ended.output);
  EXPECT_EQ(json["verdict"], "FEASIBILITY CANNOT BE DETERMINED");
  EXPECT_EQ(json["reason"], "borderline: no internal force beyond the precision of the data");
  EXPECT_FALSE(json.contains("contacts"));
}

TEST(GraspCommand, DoesNotTakeForcesOnTheBorderForForcesInside) {
  const TestFolder folder;
  const Ended ended = with_values(folder, "z0 = 0", "--json $E/pinch.json");
  EXPECT_EQ(Json::parse(ended.output)["verdict"], "FEASIBILITY CANNOT BE DETERMINED");
}

TEST(GraspCommand, RefusesValuesThatAreNotThose) {
  const TestFolder folder;
  EXPECT_EQ(with_values(folder, "z0 = 1\\n\\nz1 = 2", "$E/pinch.json").error,
            "grasp: error: the unit published 2 values, not 1\n");
}

TEST(GraspCommand, TakesOptionsOnlyWhereTheyMeanSomething) {
  const auto refusal = [](const std::string& line) {
    const std::string error = failure("$G " + line, 2);
    return error.substr(0, error.find('\n'));
  };
  EXPECT_EQ(refusal(""), "grasp: takes either a grasp, or --batch with lines, or --random");
  EXPECT_EQ(refusal("--batch a --random 3"), refusal(""));
  EXPECT_EQ(refusal("--batch a --svg b"), "grasp: --svg goes with a single grasp only");
  EXPECT_EQ(refusal("--resume a"), "grasp: --resume goes with --batch only");
  EXPECT_EQ(refusal("--seed 3 a"), "grasp: --seed goes with --random only");
  EXPECT_EQ(refusal("--random 3 --ask all"), "grasp: --ask goes with a grasp or --batch only");
  EXPECT_EQ(refusal("--batch a --resume"),
            "grasp: --resume goes on with the file of -o, which is missing");
  EXPECT_EQ(refusal("--random -3").substr(0, 38), "grasp: --random: Value -3 not in range");
  EXPECT_EQ(refusal("--batch a -j 0"), "grasp: --jobs: Value 0 not in range 1 to 1000");
}

TEST(GraspCommand, MakesRandomGraspsThatItAnswers) {
  const TestFolder folder;
  const Ended ended =
      grasp(folder, "$G --random 3 --seed 5 | $G --batch - 2>summary | wc -l; cat summary");
  EXPECT_EQ(ended.output.substr(0, 24), "3\ngrasp: 3 grasps: 2 FEA") << ended.error;
}

TEST(GraspManual, HasNothingThatItsFormatterComplainsAbout) {
  EXPECT_EQ(sdpsol::complaints_about(kManual), "");
}

TEST(GraspManual, HasEveryOptionAndExitStatus) {
  const char* const words[] = {"grasp", "--help"};
  const auto names = sdpsol::option_names(grasp::command::parse_command_line(2, words).output);
  EXPECT_GE(names.size(), 20U);
  const std::string page = sdpsol::manual_page(kManual);
  for (const std::string& name : names) EXPECT_TRUE(sdpsol::has_option(page, name)) << name;
  for (int status = zelhost::kExitDone; status <= zelhost::kExitInternal; ++status)
    EXPECT_TRUE(sdpsol::has_status(page, status)) << status;
}

}  // namespace
