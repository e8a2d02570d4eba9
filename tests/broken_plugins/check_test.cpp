// The command zelrun check as a plug-in's author runs it: what it says about each
// of the plug-ins that break one expectation, and about those that break none.
//
// A sanitizer would turn crashes into reports and exit codes of its own; it is told
// not to.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/test_folder.h"

namespace {

namespace fs = std::filesystem;

using test_support::TestFolder;

using Lines = std::vector<std::string>;

const fs::path kBroken = SDPSOL_BROKEN_PLUGINS;
const std::string kBinaries = SDPSOL_BIN_DIR;

struct Ended {
  int exit_code = -1;
  std::string output;

  [[nodiscard]] Lines lines(std::string_view beginning = "") const {
    Lines found;
    std::istringstream all(output);
    for (std::string line; std::getline(all, line);)
      if (line.rfind(beginning, 0) == 0) found.push_back(line);
    return found;
  }
};

// Standard output and error together.
Ended zelrun_check(const std::string& arguments, const std::string& environment = "") {
  const std::string line = environment + " ASAN_OPTIONS=handle_segv=0:abort_on_error=1 " +
                           kBinaries + "/zelrun check " + arguments + " 2>&1";
  std::FILE* const pipe = popen(line.c_str(), "r");
  if (pipe == nullptr) return {};
  Ended ended;
  std::array<char, 4096> buffer = {};
  for (std::size_t size = 0; (size = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
    ended.output.append(buffer.data(), size);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) ended.exit_code = WEXITSTATUS(status);
  return ended;
}

// What is expected of each broken plug-in

struct Expectation {
  std::string plugin;
  Lines failed;
  Lines skipped;
};

void PrintTo(const Expectation& expectation, std::ostream* out) {
  *out << expectation.plugin;
}

const std::string kRecords = "its records are exported and lead to each other: ";
const std::string kDialog = "every field of the dialog has a label of its own: ";
const std::string kCreated = "an instance is created: ";
const std::string kOperations = "creating an instance misuses no operation: ";
const std::string kParent = "a parent that is no unit is refused with error 2: ";
const std::string kNoRoom = "without room for a unit, error 30 is reported: ";
const std::string kOrder = "return_unit comes before the root's children, label comes last: ";
const std::string kTree = "the tree is made of named groups and methods: ";
const std::string kUser = "each instance has a user pointer, which all its units share: ";
const std::string kTexts = "every method and every port has its text: ";
const std::string kBackwards = "the methods work from last to first, each twice: ";
const std::string kHundred = "a hundred instances work side by side: ";
const std::string kSegfault = "killed by signal 11 (Segmentation fault)";

Expectation loading(const std::string& plugin, const std::string& why) {
  return {plugin, {"the library loads: " + why}, {"all other checks: the library does not load"}};
}

Expectation records(const std::string& plugin, const std::string& why) {
  return {plugin, {kRecords + why}, {"all other checks: the records are not sound"}};
}

Expectation creation(const std::string& plugin, const std::string& why) {
  return {plugin, {kCreated + why}, {"all checks of instances: there is no instance"}};
}

Expectation one(const std::string& plugin, const std::string& failed) {
  return {plugin, {failed}, {}};
}

Lines not_working(const std::string& check) {
  return {"the methods work one after the other: " + check + " did not pass",
          "the methods work from last to first, each twice: " + check + " did not pass",
          "a hundred instances work side by side: " + check + " did not pass",
          "the process ends well after the methods have worked: " + check + " did not pass"};
}

// A method that fails whatever its inputs are, or as often as not.
Expectation scaling(const std::string& plugin, const std::string& why,
                    const std::string& except = "") {
  Lines failed;
  for (const char* const inputs :
       {"inputs never set", "zeros", "ordinary inputs", "long arrays", "huge numbers",
        "negative numbers", "NaN inputs", "infinite numbers"})
    if (inputs != except) failed.push_back("Arrays:Scale with " + std::string(inputs) + ": " + why);
  return {plugin, failed, not_working("Arrays:Scale with ordinary inputs")};
}

Lines counting(const std::string& why) {
  Lines failed;
  for (const char* const inputs : {"inputs never set", "zeros", "ordinary inputs", "long arrays",
                                   "huge numbers", "negative numbers"})
    failed.push_back("Arrays:Count with " + std::string(inputs) + ": " + why);
  return failed;
}

std::string missing(const std::string& record) {
  return "there is no record " + record +
         " (a plug-in's records end in the name of its file, and are exported)";
}

std::string with_both_parents(const std::string& why, const std::string& other_why) {
  return kParent + "with a parent that is null: " + why +
         "; with a parent that is null: error 2 is not reported (error_msg)" +
         "; with a parent that is none of the host's units: " + other_why +
         "; with a parent that is none of the host's units: error 2 is not reported (error_msg)";
}

// Of thirty complaints, the last one and as many before it as make twenty.
std::string for_many_ports() {
  std::string all;
  for (int port = 2; port < 21; ++port)
    all +=
        "the method Arrays:Scale has no output " + std::to_string(port) + ", which is described; ";
  return all + "10 more; the method Arrays:Scale has no output 31, which is described";
}

const std::string kOwned = "zel_reassign: Arrays:Scale, output 0: the array is the host's already";
const std::string kNoCount = kTexts + "there is no method Arrays:Count, which is described";
const std::string kNoScale = kTexts + "there is no method Arrays:Scale, which is described";

const std::vector<Expectation>& expectations() {
  static const std::vector<Expectation> all = {
      loading("undefined_symbol", "undefined symbol: there_is_no_such_function"),
      loading("crashes_at_loading", kSegfault),
      one("crashes_at_the_end",
          "the process ends well after the methods have worked: at the end of the process: " +
              kSegfault),

      records("no_version", missing("Kem_V_of_no_version")),
      records("no_folder", missing("gsFolder_no_folder")),
      records("no_icon_array", missing("gasIconsOfFolder_no_icon_array")),
      records("no_icon_definition", missing("ICONDEF_no_icon_definition")),
      records("small_record", "the record Kem_V_of_small_record has 8 bytes instead of 16"),
      records("folder_elsewhere",
              "gsFolder_folder_elsewhere does not lead to gasIconsOfFolder_folder_elsewhere"),
      records("icons_without_end",
              "gasIconsOfFolder_icons_without_end has no end (an entry of empty texts)"),
      records("no_icons", "gasIconsOfFolder_no_icons has no icon"),
      records("icon_without_definition",
              "gasIconsOfFolder_icon_without_definition has an icon without a definition"),
      records("icon_of_another_folder",
              "gasIconsOfFolder_icon_of_another_folder has an icon of another folder"),
      records("definition_elsewhere",
              "gasIconsOfFolder_definition_elsewhere does not lead to "
              "ICONDEF_definition_elsewhere"),
      records("null_create", "ICONDEF_null_create has a null where a function belongs"),
      records("null_dialog", "ICONDEF_null_dialog has a null where a text belongs"),
      records("wrong_icon_name", "ICONDEF_wrong_icon_name has another name than its entry"),
      records("dialog_without_end",
              "ICONDEF_dialog_without_end: dialog text, character 20: \"%{\" has no \"%}\""),

      one("field_without_label", kDialog + "field 1 has no label"),
      one("duplicate_labels", kDialog + "two fields are labelled \"text\""),
      one("second_returns_0", "the icon's second function returns 1: it returns 0"),
      {"other_icon_creates_nothing",
       {"icon other: " + kCreated + "create returned null"},
       {"icon other: all checks of instances: there is no instance"}},

      creation("create_returns_null", "create returned null"),
      creation("create_reports_an_error",
               "create returned null; create_reports_an_error: error 30: the unit could not be "
               "created"),
      creation("create_returns_a_group",
               "create returned a unit without a name below the root, which is not a child of the "
               "parent that it was given"),
      creation("create_returns_a_stranger", "create returned what is no unit of this host"),
      creation("create_throws", "threw: no numbers today"),
      creation("create_crashes", kSegfault),
      creation("create_forks", "create forked and came back in both processes"),
      one("create_changes_folder",
          "creating an instance leaves the process as it was: it changed the working folder"),
      one("accepts_any_parent",
          with_both_parents("primitive_unit: the unit is null",
                            "primitive_unit: the unit is none of this host's")),
      one("builds_below_another_parent",
          with_both_parents("create returned a unit", "create returned a unit")),
      one("leaves_a_unit_behind",
          kParent + "with a parent that is null: create returned null, but has built units"),
      one("silent_about_parent",
          kParent + "with a parent that is null: error 2 is not reported (error_msg); with a "
                    "parent that is none of the host's units: error 2 is not reported (error_msg)"),
      one("silent_without_room", kNoRoom + "error 30 is not reported (error_msg)"),
      one("crashes_with_little_room",
          "too little room for all units does no harm: with room for 1 of 5 units: " + kSegfault),
      one("reads_past_dialog", kOperations + "TVAL: the dialog has no field 2"),
      one("error_in_spite_of_success",
          kOperations + "an error is reported though there is an instance: "
                        "error_in_spite_of_success: error 30: the unit could not be created"),
      one("no_return_unit", kOrder + "return_unit is not called"),
      {"late_return_unit",
       {kOperations + "return_unit: the root has children already",
        kOrder + "return_unit is called after the root was given children"},
       {}},
      {"return_unit_twice",
       {kOperations + "return_unit: called a second time",
        kOrder + "return_unit is called 2 times"},
       {}},
      one("return_unit_of_group", kOrder + "return_unit is called on Arrays instead of the root"),
      one("no_label", kOrder + "label is not called"),
      one("early_label", kOrder + "zel_name_unit is called after label"),

      {"unnamed_unit", {kTree + "there is a unit without a name below Arrays", kNoCount}, {}},
      {"duplicate_name",
       {kOperations + "zel_name_unit: a sibling is named \"Scale\" already",
        kTree + "there is a unit without a name below Arrays", kNoCount},
       {}},
      {"name_of_another_path",
       {kTree + "two units are named Arrays:Count",
        kTexts + "the method Arrays:Count has no help text; the method Arrays:Count has no text "
                 "for its input 0; the method Arrays:Count has no text for its output 0; there is "
                 "no method Length, which is described"},
       {}},
      one("names_the_parent", kOperations + "zel_name_unit: the unit is the host's own"),
      one("group_not_exporting",
          kTree + "Arrays does not export its methods (zel_indicate_export_of_methods)"),
      one("root_not_exporting",
          kTree + "the root does not export its methods (zel_indicate_export_of_methods)"),
      one("root_with_ports", kTree + "the root has ports but no method function"),
      one("root_with_method", kTree + "the root has a method function"),
      {"group_with_method",
       {kTree + "the method Arrays has units below it",
        kTexts + "the method Arrays has no help text", "Arrays, which has no inputs: " + kSegfault},
       not_working("Arrays, which has no inputs")},
      {"method_without_function",
       {kTree + "Arrays:Scale has ports but no method function", kNoScale},
       {}},
      {"method_below_method",
       {kTree + "the method Arrays:Scale has units below it",
        kTexts + "the method Arrays:Scale:Count has no help text; the method Arrays:Scale:Count "
                 "has no text for its input 0; the method Arrays:Scale:Count has no text for its "
                 "output 0; there is no method Arrays:Count, which is described"},
       {}},
      one("no_methods", kTree + "there is no method"),
      {"wrong_tag", {kOperations + "primitive_unit: no port kind: -99999995", kNoCount}, {}},
      {"wrong_count", {kOperations + "primitive_unit: TAG_FLOAT with count 0", kNoScale}, {}},
      {"wrong_element_type",
       {kOperations +
            "primitive_unit: TAG_DYN with an element type that is neither \"F\" nor \"I\"",
        kNoCount},
       {}},

      {"no_user_pointer",
       {kUser + "the root has no user pointer; Arrays has no user pointer; Arrays:Scale has no "
                "user pointer; Arrays:Count has no user pointer; Length has no user pointer",
        kHundred + "instance 2: it has the user pointer of instance 1"},
       {}},
      one("no_user_pointer_in_method", kUser + "Arrays:Count has no user pointer"),
      {"shared_user_pointer",
       {kUser + "two instances have the same user pointer",
        kHundred + "instance 2: it has the user pointer of instance 1"},
       {}},
      one("other_user_pointer_in_group", kUser + "Arrays has another user pointer than the root"),

      one("no_help", kTexts + "the method Arrays:Scale has no help text"),
      one("blank_help", kTexts + "the method Arrays:Scale has no help text"),
      one("no_port_text", kTexts + "the method Arrays:Scale has no text for its output 1"),
      one("help_for_no_method", kTexts + "there is no method Arrays:Sort, which is described"),
      one("text_for_no_port",
          kTexts + "the method Arrays:Scale has no output 2, which is described"),
      one("texts_for_many_ports", kTexts + for_many_ports()),
      one("no_texts",
          kTexts + "the method Arrays:Scale has no help text; the method Arrays:Scale has no text "
                   "for its input 0; the method Arrays:Scale has no text for its input 1; the "
                   "method Arrays:Scale has no text for its output 0; the method Arrays:Scale has "
                   "no text for its output 1; the method Arrays:Count has no help text; the method "
                   "Arrays:Count has no text for its input 0; the method Arrays:Count has no text "
                   "for its output 0; the method Length has no help text; the method Length has no "
                   "text for its input 0; the method Length has no text for its output 0"),
      one("text_before_selection", kOperations + "INFO_FOR_INP: no method is selected"),
      one("described_once",
          "a second instance is described as the first: the second time Arrays:Count is described "
          "otherwise, or not at all; the second time Arrays:Scale is described otherwise, or not "
          "at all; the second time Length is described otherwise, or not at all"),
      one("described_the_second_time",
          "a second instance is described as the first: Arrays:Sort is described only the second "
          "time"),

      one("crashes_on_nan", "Arrays:Scale with NaN inputs: " + kSegfault),
      one("crashes_on_no_array", "Arrays:Scale with inputs never set: " + kSegfault),
      one("crashes_on_no_text", "Length with inputs never set: " + kSegfault),
      one("crashes_on_empty_text", "Length with an empty text: " + kSegfault),
      one("crashes_on_long_text", "Length with a long text: " + kSegfault),
      {"crashes_on_huge_number",
       {"Arrays:Scale with huge numbers: " + kSegfault,
        "Arrays:Scale with infinite numbers: " + kSegfault},
       {}},
      {"hangs_on_negative_number",
       {"Arrays:Scale with negative numbers: did not end within 2 s"},
       {"Arrays:Scale with NaN inputs: Arrays:Scale with negative numbers did not end",
        "Arrays:Scale with infinite numbers: Arrays:Scale with negative numbers did not end"}},
      scaling("exits", "the process ended with status 3"),
      scaling("throws", "threw: the numbers are no good"),
      scaling("throws_a_number", "threw what is no std::exception"),
      scaling("returns_1", "returned 1"),
      scaling("static_array",
              "output 0: the array is not from new[] but a variable of static_array.so; when the "
              "host frees the instance: killed by signal 6 (Aborted)"),
      scaling("short_array", "output 0: the array has no room for 1000 elements, but for 6"),
      scaling("inner_array",
              "output 0: the array is not from new[]; when the host frees the instance: killed by "
              "signal 6 (Aborted)"),
      scaling("same_array_twice", kOwned),
      // Where there is no array at the input, none is handed over.
      scaling("input_as_output", kOwned, "inputs never set"),
      scaling("negative_length", "zel_reassign: Arrays:Scale, output 0: the length is -1"),
      scaling("no_such_output", "zel_reassign: Arrays:Scale, output 2: there is no such port"),
      scaling("length_of_no_array",
              "zel_dim_of_dyn_inp: Arrays:Scale, input 0: the port is no array but 1 float"),
      scaling("changes_its_inputs", "it changed its inputs"),
      scaling("closes_output", "it closed standard output; it closed standard error"),
      scaling("replaces_input", "it replaced standard input"),
      scaling("changes_folder", "it changed the working folder"),
      scaling("changes_locale", "it changed the locale"),
      scaling("forks", "it forked and came back in both processes"),
      scaling("calls_from_a_thread",
              "zel_dim_of_dyn_inp: called from another thread than the host's"),
      scaling("grows", "primitive_unit: called while no instance is created"),
      {"keeps_dialog_text", counting("returned 1"),
       not_working("Arrays:Count with ordinary inputs")},
      scaling("crashes_the_second_time", "the second time: " + kSegfault),
      {"crashes_before_another_method", counting(kSegfault),
       not_working("Arrays:Count with ordinary inputs")},
      one("crashes_after_another_method", kBackwards + "Arrays:Scale: " + kSegfault),
      one("only_99_instances", kHundred + "instance 100: create returned null"),
      one("only_99_work",
          kHundred + "instance 1, Length: returned 1; instance 100, Length: returned 1"),
  };
  return all;
}

class BrokenPlugin : public testing::TestWithParam<Expectation> {};

TEST_P(BrokenPlugin, IsToldWhatIsWrong) {
  const Expectation& expected = GetParam();
  // As much as a loaded machine may need, except where a check is to run into it.
  const std::string limit = expected.plugin.rfind("hangs", 0) == 0 ? "2" : "30";
  const Ended ended =
      zelrun_check("--time-limit " + limit + " " + (kBroken / expected.plugin).string());
  EXPECT_EQ(ended.exit_code, 1);
  Lines failed;
  for (const std::string& line : expected.failed) failed.push_back("FAILED   " + line);
  EXPECT_EQ(ended.lines("FAILED"), failed) << ended.output;
  Lines skipped;
  for (const std::string& line : expected.skipped) skipped.push_back("skipped  " + line);
  EXPECT_EQ(ended.lines("skipped"), skipped) << ended.output;

  const std::size_t passed = ended.lines("passed").size();
  EXPECT_EQ(ended.lines().back(), std::to_string(passed + failed.size() + skipped.size()) +
                                      " checks, " + std::to_string(passed) + " passed, " +
                                      std::to_string(failed.size()) + " failed, " +
                                      std::to_string(skipped.size()) + " skipped");
}

INSTANTIATE_TEST_SUITE_P(Check, BrokenPlugin, testing::ValuesIn(expectations()),
                         [](const auto& each) { return each.param.plugin; });

TEST(Check, IsTriedOnEveryBrokenPlugin) {
  std::istringstream names(SDPSOL_BROKEN_PLUGIN_NAMES);
  std::set<std::string> built;
  for (std::string name; names >> name;) built.insert(name);
  std::set<std::string> tried = {"whole"};
  for (const Expectation& each : expectations()) tried.insert(each.plugin);
  EXPECT_EQ(tried, built);
}

TEST(Check, PassesAPluginThatBreaksNothing) {
  const Ended ended = zelrun_check((kBroken / "whole.so").string());
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_EQ(ended.lines().back(), "38 checks, 38 passed, 0 failed, 0 skipped") << ended.output;
  EXPECT_EQ(ended.lines("passed").size(), 38U);
}

TEST(Check, FindsThePluginByItsNameInAFolder) {
  const Ended ended = zelrun_check("second_returns_0 --plugins " + kBroken.string());
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_EQ(ended.lines("FAILED").size(), 1U) << ended.output;
}

TEST(Check, SaysWhenThereIsNoSuchPlugin) {
  const Ended ended = zelrun_check("/nowhere/plugin.so");
  EXPECT_EQ(ended.exit_code, 3);
  EXPECT_EQ(ended.output, "zelrun: error: /nowhere/plugin.so: no such file\n");
}

TEST(Check, FailsOnAFileThatIsNoLibrary) {
  const TestFolder folder;
  const Ended ended = zelrun_check(folder.file("text.so", std::string(10'000, 'x')));
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_EQ(ended.lines("FAILED"), Lines{"FAILED   the library loads: invalid ELF header"});
}

// What a plug-in prints is shown where its check failed, and only there.
TEST(Check, ShowsWhatWasPrintedByAMethodThatFailed) {
  const Ended ended = zelrun_check((kBroken / "exits").string());
  const Lines lines = ended.lines();
  std::size_t shown = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (lines[i] != "           Scale has enough") continue;
    ++shown;
    EXPECT_EQ(lines[i - 1].rfind("FAILED   Arrays:Scale with ", 0), 0U) << lines[i - 1];
  }
  EXPECT_EQ(shown, ended.lines("FAILED").size());
  EXPECT_EQ(shown, 8U);
}

TEST(Check, LeavesNothingBehind) {
  const TestFolder folder;
  const Ended ended =
      zelrun_check((kBroken / "crashes_on_nan").string(), "cd " + folder.path() + " && TMPDIR=. ");
  EXPECT_EQ(ended.exit_code, 1) << ended.output;
  EXPECT_EQ(folder.names(), Lines{});
}

// The check that hangs ends with the command, and its folder goes too.
TEST(Check, EndsOnASignalAndLeavesNothingBehind) {
  const TestFolder folder;
  std::array<int, 2> ends = {};
  ASSERT_EQ(pipe(ends.data()), 0);
  const std::string program = kBinaries + "/zelrun";
  const std::string plugin = kBroken / "hangs_on_negative_number.so";
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    setenv("TMPDIR", folder.path().c_str(), 1);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    execl(program.c_str(), "zelrun", "check", plugin.c_str(), nullptr);
    _exit(127);
  }
  close(ends[1]);
  // Up to the check before the one that hangs.
  std::FILE* const output = fdopen(ends[0], "r");
  std::array<char, 1000> line = {};
  while (std::fgets(line.data(), line.size(), output) != nullptr)
    if (std::string(line.data()) == "passed   Arrays:Scale with huge numbers\n") break;
  usleep(100'000);
  EXPECT_EQ(folder.names().size(), 1U);
  kill(child, SIGTERM);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
  EXPECT_EQ(folder.names(), Lines{});
  // Nobody holds the other end any more, and nothing has been said about the check.
  EXPECT_EQ(std::fgets(line.data(), line.size(), output), nullptr) << line.data();
  std::fclose(output);
}

// The plug-in of this project

TEST(Check, PassesTheSdpsolPluginWithItsCommand) {
  const TestFolder folder;
  const std::string script = folder.file("sdpsol", "#!/bin/sh\necho run >> " + folder.path("log") +
                                                       "\nexec " + kBinaries + "/sdpsol \"$@\"\n");
  fs::permissions(script, fs::perms::owner_all);
  const Ended ended = zelrun_check("sdpsol", "PATH=" + folder.path() + ":$PATH");
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_EQ(ended.lines("passed").size() + 1, ended.lines().size()) << ended.output;
  EXPECT_EQ(ended.lines().back(), "87 checks, 87 passed, 0 failed, 0 skipped");
  // Or it would have been checked without.
  const std::string runs = test_support::content_of(folder.path("log"));
  EXPECT_GT(std::count(runs.begin(), runs.end(), '\n'), 50);
}

TEST(Check, PassesTheSdpsolPluginWithoutItsCommand) {
  const Ended ended = zelrun_check("sdpsol", "PATH=/nowhere");
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_EQ(ended.lines().back(), "87 checks, 87 passed, 0 failed, 0 skipped") << ended.output;
}

}  // namespace
