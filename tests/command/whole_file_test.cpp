// Files of whole runs: whatever they are and whenever the run ends, no result or a
// whole one, and nothing else is left.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <random>
#include <thread>

#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using Names = std::vector<std::string>;

const char* const kFalse = "variable x;\nx > 1;\n1 > 2;\n";

/// Starts the command on "in" in the folder, with the result in "out" and "json".
pid_t start(const TestFolder& folder) {
  const std::string in = folder.path("in");
  const std::string out = folder.path("out");
  const std::string json = folder.path("json");
  const pid_t child = ::fork();
  if (child != 0) return child;
  ::execl(SDPSOL_BIN_DIR "/sdpsol", "sdpsol", "-q", "-o", out.c_str(), "--json", json.c_str(),
          in.c_str(), nullptr);
  ::_exit(127);
}

/// True if the signal came before the run's own end.
bool killed_in_time(pid_t child) {
  EXPECT_EQ(::kill(child, SIGKILL), 0);
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return WIFSIGNALED(status);
}

TEST(Kill, AtAnyMomentLeavesNoResultOrAWholeOne) {
  const TestFolder folder;
  folder.file("in", "variable P(3,3) symmetric;\nP > eye(3);\ntrace(P) < 5;\n");
  // How long a whole run takes here, with everything that is done at once by whole runs.
  const auto begun = std::chrono::steady_clock::now();
  int status = -1;
  ASSERT_GT(::waitpid(start(folder), &status, 0), 0);
  ASSERT_EQ(status, 0);
  const auto whole_run = std::chrono::steady_clock::now() - begun;
  const std::string result = content_of(folder.path("out"));
  ASSERT_TRUE(result.ends_with("\n]\n\n"));

  std::mt19937 random(3);
  std::uniform_real_distribution<double> share(0, 1.3);
  int killed = 0;
  int with_result = 0;
  const auto deadline = std::chrono::steady_clock::now() + 1500ms;
  for (int round = 0; round < 200 && std::chrono::steady_clock::now() < deadline; ++round) {
    folder.file("out", "stale");
    folder.file("json", "stale");
    const pid_t child = start(folder);
    ASSERT_GT(child, 0);
    std::this_thread::sleep_for(whole_run * share(random));
    if (killed_in_time(child)) ++killed;
    for (const std::string& name : folder.names()) {
      ASSERT_TRUE(name == "in" || name == "out" || name == "json") << name;
    }
    // Before the program has come to remove them, the old ones are still there.
    if (folder.exists("out") && content_of(folder.path("out")) != "stale") {
      ++with_result;
      EXPECT_EQ(content_of(folder.path("out")), result);
    }
    if (folder.exists("json") && content_of(folder.path("json")) != "stale") {
      EXPECT_TRUE(content_of(folder.path("json")).ends_with("\n}\n"));
    }
  }
  EXPECT_GT(killed, 0);
  EXPECT_GT(with_result, 0);
}

TEST(Kill, WhileTheEngineIsAtWorkLeavesNothing) {
  for (const auto moment : {0ms, 50ms, 300ms}) {
    const TestFolder folder;
    folder.file("in", long_definition(60));
    const std::string out = folder.file("out", "stale");
    const pid_t child = start(folder);
    const auto deadline = std::chrono::steady_clock::now() + 60s;
    while (folder.exists("out") && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(1ms);
    }
    std::this_thread::sleep_for(moment);
    ASSERT_TRUE(killed_in_time(child));
    EXPECT_EQ(folder.names(), Names({"in"}));
  }
}

TEST(Pipe, IsReadToItsEnd) {
  const TestFolder folder;
  folder.file("in", kFalse);
  const Ended ended = run_line(
      folder, "mkfifo pipe; { head -c 20 in; sleep 0.1; tail -c +21 in; } > pipe & $S -o out pipe");
  EXPECT_EQ(ended.status, 0) << ended.error;
  EXPECT_TRUE(content_of(folder.path("out")).starts_with("sdpsol "));
  EXPECT_TRUE(fs::is_fifo(folder.path("pipe")));
}

TEST(Pipe, TakesAResult) {
  const TestFolder folder;
  folder.file("in", kFalse);
  EXPECT_EQ(run_line(folder, "$S -o out in").status, 0);
  const Ended ended =
      run_line(folder, "mkfifo pipe; cat pipe > got & $S -o pipe in; s=$?; wait; exit $s");
  EXPECT_EQ(ended.status, 0) << ended.error;
  EXPECT_EQ(content_of(folder.path("got")), content_of(folder.path("out")));
  EXPECT_TRUE(fs::is_fifo(folder.path("pipe")));
}

TEST(Pipe, WhoseReaderHasGoneIsAnError) {
  const TestFolder folder;
  folder.file("in", kFalse);
  const Ended ended =
      run_line(folder,
               "{ sleep 0.1; $S --json json in; echo $? >status; } | true; until test -s status; "
               "do sleep 0.01; done");
  EXPECT_EQ(content_of(folder.path("status")), "3\n");
  EXPECT_EQ(ended.error, "sdpsol: cannot write standard output: Broken pipe\n");
  EXPECT_EQ(folder.names(), Names({"in", "status"}));
  const Ended help =
      run_line(folder, "{ sleep 0.1; $S --help; echo $? >status; } | true; sleep 0.3");
  EXPECT_EQ(content_of(folder.path("status")), "3\n");
  EXPECT_EQ(help.error, "sdpsol: cannot write standard output: Broken pipe\n");
}

TEST(Pipe, ThatDoesNotWaitIsWaitedFor) {
  const TestFolder folder;
  folder.file("in", "variable x(400,1);\nx > 0;\nx < 1;\n");
  // A pipe of one page whose writer is told to try again while nobody reads.
  const std::string script =
      "import fcntl, os, subprocess, sys, time\n"
      "reading, writing = os.pipe()\n"
      "fcntl.fcntl(writing, 1031, 4096)\n"
      "os.set_blocking(writing, False)\n"
      "run = subprocess.Popen([sys.argv[1], 'in'], stdout=writing)\n"
      "os.close(writing)\n"
      "time.sleep(0.3)\n"
      "text = open(reading).read()\n"
      "sys.exit(run.wait() or not text.endswith(',\\n]\\n\\n'))\n";
  folder.file("script", script);
  const Ended ended = run_line(folder, "/usr/bin/python3 script $S");
  EXPECT_EQ(ended.status, 0) << ended.error;
}

TEST(ClosedStreams, AreNotMistakenForFiles) {
  const TestFolder folder;
  folder.file("in", kFalse);
  const Ended output = run_line(folder, "$S --json json in >&-");
  EXPECT_EQ(output.status, 3);
  EXPECT_EQ(output.error, "sdpsol: cannot write standard output: Bad file descriptor\n");
  EXPECT_EQ(folder.names(), Names({"in"}));
  const Ended input = run_line(folder, "$S -o out - <&-");
  EXPECT_EQ(input.status, 3);
  EXPECT_EQ(input.error, "sdpsol: cannot read standard input: Bad file descriptor\n");
  EXPECT_EQ(folder.names(), Names({"in"}));
  folder.file("limited", "variable x;\nx > 1;\nmaximize o = x;\n");
  EXPECT_EQ(run_line(folder, "$S -o out limited <&- >&- 2>&-").status, 0);
  EXPECT_TRUE(content_of(folder.path("out")).starts_with("sdpsol 0.1.0\n"));
}

/// A device of our own with the numbers of a well-known one.
bool make_device(const TestFolder& folder, const char* name, unsigned minor_number) {
  constexpr unsigned kMemoryDevices = 1;
  const std::string path = folder.path(name);
  if (::mknod(path.c_str(), S_IFCHR | 0666, makedev(kMemoryDevices, minor_number)) != 0) {
    return false;
  }
  // Where a file system holds no devices, making one is allowed and opening it is not.
  return ::access(path.c_str(), R_OK | W_OK) == 0 &&
         run_line(folder, std::string("dd if=/dev/null of=") + name).status == 0;
}

TEST(Device, TakesAResultAndStays) {
  const TestFolder folder;
  folder.file("in", kFalse);
  if (!make_device(folder, "null", 3)) {
    GTEST_SKIP() << "no device can be made here: " << std::strerror(errno);
  }
  fs::create_symlink("null", folder.path("link"));
  for (const char* name : {"null", "link"}) {
    EXPECT_EQ(run_line(folder, std::string("$S -o ") + name + " in").status, 0);
  }
  EXPECT_TRUE(fs::is_character_file(fs::symlink_status(folder.path("null"))));
  EXPECT_TRUE(fs::is_symlink(folder.path("link")));
}

TEST(Device, ThatIsFullIsAnErrorAndStays) {
  const TestFolder folder;
  folder.file("in", kFalse);
  folder.file("json", "stale");
  if (!make_device(folder, "full", 7)) {
    GTEST_SKIP() << "no device can be made here: " << std::strerror(errno);
  }
  const Ended ended = run_line(folder, "$S -o full --json json in");
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.error, "sdpsol: cannot write 'full': No space left on device\n");
  EXPECT_TRUE(fs::is_character_file(folder.path("full")));
  EXPECT_EQ(folder.names(), Names({"full", "in"}));
}

TEST(Device, WithoutAnEndIsSoonRefused) {
  const TestFolder folder;
  if (!make_device(folder, "zero", 5)) {
    GTEST_SKIP() << "no device can be made here: " << std::strerror(errno);
  }
  for (const char* line : {"$S zero", "$S /dev/stdin <zero", "$S - <zero"}) {
    // Reading the gigabyte that a file may have would take more than this.
    const Ended ended = run_line(folder, std::string("ulimit -t 1; ") + line);
    EXPECT_EQ(ended.status, 3) << line;
    EXPECT_TRUE(ended.error.ends_with(": File too large\n")) << ended.error;
  }
}

TEST(Device, WithoutATextIsAnEmptyDefinition) {
  const TestFolder folder;
  if (!make_device(folder, "null", 3)) {
    GTEST_SKIP() << "no device can be made here: " << std::strerror(errno);
  }
  EXPECT_EQ(run_line(folder, "$S null").status, 1);
}

TEST(FullDisk, IsAnErrorWithAMessage) {
  const TestFolder folder;
  folder.file("in", "variable x(300,1);\nx > 0;\nx < 1;\n");
  fs::create_directory(folder.path("disk"));
  const std::string mounted =
      "unshare -m sh -c 'mount -t tmpfs -o size=4k none disk 2>/dev/null || exit 77; ";
  if (run_line(folder, mounted + "exit 0' 2>/dev/null").status != 0) {
    GTEST_SKIP() << "nothing can be mounted here";
  }
  const Ended ended = run_line(folder, "S=$S; export S; " + mounted +
                                           "echo stale >disk/out; "
                                           "$S -o disk/out in; echo $?; ls -A disk; "
                                           "$S -o out --json disk/json in; echo $?; ls -A disk'");
  EXPECT_EQ(ended.output, "3\n3\n");
  EXPECT_EQ(ended.error,
            "sdpsol: cannot write 'disk/out': No space left on device\n"
            "sdpsol: cannot write 'disk/json': No space left on device\n");
  EXPECT_EQ(folder.names(), Names({"disk", "in"}));
}

TEST(Link, StaysAndItsTargetIsReplaced) {
  const TestFolder folder;
  folder.file("in", kFalse);
  folder.file("target", "stale");
  fs::create_symlink("target", folder.path("link"));
  EXPECT_EQ(run_line(folder, "$S -o link in").status, 0);
  EXPECT_EQ(fs::read_symlink(folder.path("link")), "target");
  EXPECT_TRUE(content_of(folder.path("target")).starts_with("sdpsol 0.1.0\n"));
  folder.file("in", "nonsense");
  EXPECT_EQ(run_line(folder, "$S -o link in").status, 1);
  EXPECT_EQ(folder.names(), Names({"in", "link"}));
}

}  // namespace
}  // namespace sdpsol
