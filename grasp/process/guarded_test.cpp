#include "grasp/process/guarded.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/support/test_folder.h"

namespace grasp {
namespace {

namespace fs = std::filesystem;
using test_support::TestFolder;

class RunGuarded : public testing::Test {
 protected:
  RunGuarded() {
    fs::create_directory(scratch_);
    setenv("TMPDIR", scratch_.c_str(), 1);
  }
  ~RunGuarded() override { unsetenv("TMPDIR"); }

  // What becomes of a process that is sent the signal while its work waits for a program.
  [[nodiscard]] int end_of_interrupted(int signal) const {
    const pid_t process = fork();
    if (process == 0) {
      // As from a shell, whatever this program was started with.
      std::signal(signal, SIG_DFL);
      const fs::path begun = folder_.path("begun");
      _exit(run_guarded([&begun](const fs::path&) {
        std::ofstream(begun) << "";
        return std::system("sleep 600");
      }));
    }
    while (!folder_.exists("begun")) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    kill(process, signal);
    int status = 0;
    waitpid(process, &status, 0);
    fs::remove(folder_.path("begun"));
    return status;
  }

  TestFolder folder_;
  fs::path scratch_ = folder_.path("a scratch");
};

TEST_F(RunGuarded, ReturnsWhatTheWorkReturns) {
  EXPECT_EQ(run_guarded([](const fs::path&) { return 0; }), 0);
  EXPECT_EQ(run_guarded([](const fs::path&) { return 3; }), 3);
}

TEST_F(RunGuarded, StandsInAFolderOfItsOwnAndKnowsTheFormerOne) {
  const fs::path here = fs::current_path();
  EXPECT_EQ(run_guarded([&](const fs::path& home) {
              std::ofstream("file") << "text";
              return fs::current_path().parent_path() == scratch_ && home == here ? 0 : 1;
            }),
            0);
  EXPECT_EQ(fs::current_path(), here);
  EXPECT_TRUE(fs::is_empty(scratch_));
}

TEST_F(RunGuarded, TellsHowTheWorkDied) {
  try {
    run_guarded([](const fs::path&) {
      std::raise(SIGKILL);
      return 0;
    });
    ADD_FAILURE() << "nothing thrown";
  } catch (const GuardedWorkDied& died) {
    EXPECT_STREQ(died.what(), "the process that worked was killed by signal 9 (Killed)");
  }
  EXPECT_TRUE(fs::is_empty(scratch_));
}

TEST_F(RunGuarded, DiesByTheSignalThatEndsTheWork) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const int status = end_of_interrupted(signal);
    ASSERT_TRUE(WIFSIGNALED(status)) << signal;
    EXPECT_EQ(WTERMSIG(status), signal);
    EXPECT_TRUE(fs::is_empty(scratch_)) << signal;
  }
}

TEST_F(RunGuarded, LeavesSignalsIgnoredThatWereSo) {
  const auto before = std::signal(SIGHUP, SIG_IGN);
  EXPECT_EQ(run_guarded([](const fs::path&) {
              kill(getppid(), SIGHUP);
              kill(getpid(), SIGHUP);
              return 5;
            }),
            5);
  std::signal(SIGHUP, before);
}

}  // namespace
}  // namespace grasp
