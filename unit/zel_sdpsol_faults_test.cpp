// What a host sees when something on the road to the solver and back is broken.
// Whatever it is, the host lives on and the next good run is a good one.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "unit/zel_sdpsol_grasp_fixture.h"

namespace {

using namespace unit_test;

// Shared libraries and sanitizers take addresses of their own before main.
#if defined(SDPSOL_STATIC)
constexpr bool kLimitsMemory = true;
#else
constexpr bool kLimitsMemory = false;
#endif

constexpr const char* kRunning[] = {"General:Run_Sdpsol",
                                    "Is_Feasible",
                                    "IntForce:Exists",
                                    "IntForce:Maximize_Individual",
                                    "IntForce:Maximize_PointCont",
                                    "IntForce:Maximize_FrictConts",
                                    "IntForce:Maximize_All"};

class Faults : public PluginTest {
 protected:
  // The unit of a method that runs the command, with something to ask for.
  def_unittype* ready(const def_unittype* root, const std::string& name) {
    def_unittype* const unit = find(root, name);
    if (name == "Is_Feasible") {
      RecordingHost::set_float(unit, 0, 0, 1);
      RecordingHost::set_array(unit, 1, Floats{1});
    } else if (name.starts_with("IntForce:")) {
      RecordingHost::set_array(unit, 0, Floats{0, 0, 1});
      RecordingHost::set_array(unit, 1, Floats{0.5F});
      RecordingHost::set_array(unit, 2, Floats{-10, 10, -10, 10, 0, 10});
      RecordingHost::set_array(unit, 3, Integers{3});
    }
    return unit;
  }

  // Every method that runs the command shows that it failed, and the code.
  void expect_failure(const def_unittype* root, float code) {
    for (const std::string name : kRunning) {
      SCOPED_TRACE(name);
      def_unittype* const unit = ready(root, name);
      fire(unit);
      EXPECT_EQ(out(unit, 0), name == "General:Run_Sdpsol" ? code : 0.0F);
      EXPECT_NE(said_, "");
      EXPECT_EQ(get_result(root), (Shown{0, 0, code, {}}));
    }
    expect_alive();
  }

  void expect_alive() {
    const def_unittype* const root = answering(kFeasible);
    fire(ready(root, "IntForce:Exists"));
    EXPECT_EQ(get_result(root), (Shown{1, 0, 0, {1}}));
  }
};

TEST_F(Faults, AMissingSolverIsTwo) {
  expect_failure(instance("exec 2>/dev/null; " + dir_.path("no-such-command")), 2);
}

TEST_F(Faults, ACommandThatFailsIsTwoWhateverItWrote) {
  answer_with(kFeasible);
  expect_failure(instance(script(dir_, "cp " + dir_.path("answer") + " \"$3\"\nexit 1\n")), 2);
}

TEST_F(Faults, ASolverKilledByASignalIsTwo) {
  // Without a shell in between, which would say so.
  expect_failure(instance("exec " + script(dir_, "kill -9 $$\n")), 2);
}

TEST_F(Faults, AHangingSolverThatIsKilledIsTwo) {
  const std::string pid_file = dir_.path("pid");
  const std::string hang =
      "echo $$ > " + pid_file + ".new\nmv " + pid_file + ".new " + pid_file + "\nexec sleep 60\n";
  const def_unittype* const root = instance("exec " + script(dir_, hang));
  pid_t killed = 0;
  std::thread killer([&] {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(50);
    while (!std::filesystem::exists(pid_file) && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::ifstream(pid_file) >> killed;
    if (killed > 1) kill(killed, SIGKILL);
  });
  def_unittype* const unit = ready(root, "IntForce:Exists");
  fire(unit);
  killer.join();
  EXPECT_GT(killed, 1);
  EXPECT_EQ(out(unit, 0), 0.0F);
  EXPECT_EQ(get_result(root), (Shown{0, 0, 2, {}}));
  expect_alive();
}

TEST_F(Faults, AResultThatWasNotWrittenIsThree) {
  expect_failure(instance("true"), 3);
}

TEST_F(Faults, AResultThatMayNotBeReadIsThree) {
  const NotRoot not_root;
  if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
  const TestFolder dir;
  write_file(dir.path("out"), kFeasible);
  ASSERT_EQ(chmod(dir.path("out").c_str(), 0), 0);
  host_.dialog = {"true", dir.path("in"), dir.path("out")};
  const def_unittype* const root = icon().create(0, 0, &icon(), host_.parent());
  ASSERT_NE(root, nullptr);
  fire(find(root, "General:Run_Sdpsol"));
  EXPECT_EQ(get_result(root), (Shown{0, 0, 3, {}}));
}

TEST_F(Faults, AStaleResultIsTakenForANewOne) {
  const def_unittype* const root = instance("true");
  write_file(dir_.path("sdpsol.out"), kObjective);
  for (const std::string name : kRunning) {
    SCOPED_TRACE(name);
    def_unittype* const unit = ready(root, name);
    fire(unit);
    EXPECT_EQ(out(unit, 0), name == "General:Run_Sdpsol" ? 0.0F : 1.0F);
    EXPECT_EQ(get_result(root), (Shown{1, 3.43119587F, 0, {1.5F, 2.5F, 3.5F, 4.5F}}));
  }
}

TEST_F(Faults, AResultThatSendsTheReaderRoundInACircleIsFour) {
  const def_unittype* const root = answering("garbage\nwithout any marker\n");
  for (const std::string name : kRunning) {
    SCOPED_TRACE(name);
    def_unittype* const unit = ready(root, name);
    fire(unit);
    EXPECT_EQ(out(unit, 0), name == "General:Run_Sdpsol" ? 4.0F : 0.0F);
    const Shown shown = get_result(root);
    EXPECT_EQ(shown.code, 4.0F);
    EXPECT_EQ(shown.feasible, 0.0F);
  }
  expect_alive();
}

TEST_F(Faults, AnEmptyResultThrowsThroughTheMethodAndLeavesItsOutputs) {
  const def_unittype* const root = answering("");
  for (const std::string name : kRunning) {
    SCOPED_TRACE(name);
    def_unittype* const unit = ready(root, name);
    driver_of(root).lastResult = {0, true, 5.0, {"old"}, {1.0}, 1};
    try {
      fire_anyhow(unit);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
      EXPECT_TRUE(std::string(error.what()).starts_with("basic_string::substr")) << error.what();
    }
    EXPECT_EQ(packets_, Packets());
    EXPECT_EQ(calls_.find("zel_reassign"), std::string::npos);
    EXPECT_EQ(out(unit, 0), kUnwritten);
    // Nothing in an empty text speaks against the problem.
    EXPECT_EQ(get_result(root), (Shown{1, 0, 100, {}}));
  }
  answer_with(kFeasible);
  fire(ready(root, "IntForce:Exists"));
  EXPECT_EQ(get_result(root), (Shown{1, 0, 0, {1}}));
}

TEST_F(Faults, ADefinitionFileInNoDirectoryIsOne) {
  const def_unittype* const root = instance("touch " + dir_.path("called") + ";", "missing/name");
  expect_failure(root, 1);
  EXPECT_FALSE(std::filesystem::exists(dir_.path("called")));
}

TEST_F(Faults, AWorkingDirectoryThatMayNotBeWrittenIsOne) {
  const NotRoot not_root;
  if (geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  const TestFolder dir;
  ASSERT_EQ(mkdir(dir.path("closed").c_str(), 0555), 0);
  const WorkingDirectory closed(dir.path("closed"));
  const def_unittype* const root = icon().create(0, 0, &icon(), host_.parent());
  ASSERT_NE(root, nullptr);
  def_unittype* const unit = find(root, "General:Run_Sdpsol");
  fire(unit);
  EXPECT_EQ(out(unit, 0), 1.0F);
  EXPECT_EQ(get_result(root), (Shown{0, 0, 1, {}}));
}

// The driver does not notice, the solver finds no definition that ends.
TEST_F(Faults, ADefinitionFileOnAFullDeviceIsTheSolversToRefuse) {
  if (!kLimitsMemory) GTEST_SKIP() << "only of the static command, by a limit on memory";
  if (!std::filesystem::is_character_file("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  const std::string command = "ulimit -v 400000; " SDPSOL_BIN_DIR "/sdpsol";
  host_.dialog = {command, "/dev/full", dir_.path("sdpsol.out")};
  write_file(dir_.path("sdpsol.out"), kFeasible);
  const def_unittype* const root = icon().create(0, 0, &icon(), host_.parent());
  ASSERT_NE(root, nullptr);
  def_unittype* const unit = ready(root, "IntForce:Exists");
  fire_anyhow(unit);
  EXPECT_NE(packets_, Packets());
  EXPECT_EQ(out(unit, 0), 0.0F);
  EXPECT_EQ(get_result(root), (Shown{0, 0, 2, {}}));
  EXPECT_FALSE(std::filesystem::exists(dir_.path("sdpsol.out")));
}

// What the driver's parser makes of a text, and the code of a run that ends so.
struct Parsed {
  bool throws = false;
  int code = 0;
  sdpsol_wrapper::result left;
};

Parsed parsed(const std::string& text) {
  sdpsol_wrapper driver("", "", "");
  driver.resultText = text;
  Parsed parsed;
  try {
    parsed.code = driver.parseResult() == 0 ? 0 : 4;
  } catch (const std::out_of_range&) {
    parsed.throws = true;
    parsed.code = 100;
  }
  parsed.left = driver.lastResult;
  parsed.left.errorCode = parsed.code;
  if (parsed.code == 4) parsed.left.feasible = false;
  return parsed;
}

TEST_F(Faults, AResultCutAnywhereIsWhatTheParserMakesOfIt) {
  const def_unittype* const solved = solving("whole");
  driver_of(solved).definition =
      "variable x, Q(2,2) symmetric;\nx > 1; x < 2;\nQ > x*eye(2);\ntrace(Q) < 5;\n"
      "minimize o = x;\n";
  fire(find(solved, "General:Run_Sdpsol"));
  const std::string whole = content_of(dir_.path("whole.out"));
  ASSERT_EQ(get_result(solved).values.size(), 5U);

  const def_unittype* const root = instance("true");
  def_unittype* const unit = find(root, "General:Run_Sdpsol");
  std::map<int, int> codes;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    SCOPED_TRACE(length);
    const std::string cut = whole.substr(0, length);
    write_file(dir_.path("sdpsol.out"), cut);
    const Parsed expected = parsed(cut);
    bool threw = false;
    try {
      fire(unit);
    } catch (const std::out_of_range&) {
      threw = true;
    }
    ASSERT_EQ(threw, expected.throws);
    ASSERT_EQ(out(unit, 0), threw ? kUnwritten : static_cast<float>(expected.code));
    expect_same_result(driver_of(root).lastResult, expected.left);
    const Shown shown = get_result(root);
    ASSERT_EQ(
        shown,
        (Shown{expected.left.feasible ? 1.0F : 0.0F,
               static_cast<float>(expected.left.objectiveValue), static_cast<float>(expected.code),
               Floats(expected.left.variableValues.begin(), expected.left.variableValues.end())}));
    ++codes[expected.code];
  }
  // All three ends were met; the last text is the whole one.
  EXPECT_EQ(codes.size(), 3U);
  EXPECT_EQ(get_result(root), get_result(solved));
}

}  // namespace
