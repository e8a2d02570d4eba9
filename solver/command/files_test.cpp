// Reading, and what a result file does to regular files and to names that lead
// elsewhere. Where writing fails: files_failing_test.cpp.
#include "solver/command/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/test_folder.h"

namespace sdpsol {
namespace {

using test_support::content_of;
using test_support::TestFolder;

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

template <typename Error, typename Action>
std::string message_of(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  return "nothing was thrown";
}

std::string reading(const std::string& name, std::size_t most = 1000) {
  return message_of<FileError>([&] { read_whole_file(name, most); });
}

void write(ResultFile& result, const std::string& text) {
  result.stage(text);
  result.publish();
}

void write(const std::string& name, const std::string& text) {
  ResultFile result(name);
  write(result, text);
}

TEST(ReadWholeFile, ReturnsEveryByte) {
  const TestFolder folder;
  const std::string bytes("a\r\n\0\xff%\n\n", 8);
  EXPECT_EQ(read_whole_file(folder.file("in", bytes), 1000), bytes);
  EXPECT_EQ(read_whole_file(folder.file("none", ""), 1000), "");
  const std::string large(300'000, 'x');
  EXPECT_EQ(read_whole_file(folder.file("large", large), 300'000), large);
}

TEST(ReadWholeFile, SaysWhatIsWrong) {
  const TestFolder folder;
  EXPECT_EQ(reading(folder.path("in")),
            "cannot read '" + folder.path("in") + "': No such file or directory");
  EXPECT_EQ(reading(folder.path()), "cannot read '" + folder.path() + "': Is a directory");
  EXPECT_EQ(reading(""), "cannot read '': No such file or directory");
  EXPECT_EQ(reading(folder.file("in", "123456"), 5),
            "cannot read '" + folder.path("in") + "': File too large");
  EXPECT_EQ(reading("/dev/zero"), "cannot read '/dev/zero': File too large");
}

TEST(ResultFile, RemovesTheOldOneAtOnceAndTheNewOneAppearsWhole) {
  const TestFolder folder;
  const std::string name = folder.file("out", "old");
  ResultFile result(name);
  EXPECT_EQ(folder.names(), Names());
  result.stage("new\n");
  EXPECT_EQ(folder.names(), Names());
  result.publish();
  EXPECT_EQ(folder.names(), Names({"out"}));
  EXPECT_EQ(content_of(name), "new\n");
}

TEST(ResultFile, HasTheRightsOfAnyNewFile) {
  const TestFolder folder;
  const std::string name = folder.path("out");
  for (const mode_t mask : {0022U, 0027U, 0077U, 0U}) {
    const mode_t before = ::umask(mask);
    write(name, "text");
    EXPECT_EQ(::umask(before), mask);
    struct stat status {};
    ASSERT_EQ(::stat(name.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0666U & ~mask);
  }
}

TEST(ResultFile, TakesTheLongestNameThatAFileCanHave) {
  const TestFolder folder;
  const std::string longest(255, 'x');
  write(folder.path(longest), "text");
  EXPECT_EQ(content_of(folder.path(longest)), "text");
  EXPECT_EQ(message_of<FileError>([&] { ResultFile(folder.path(longest + "x")); }),
            "cannot write '" + folder.path(longest + "x") + "': File name too long");
}

TEST(ResultFile, LeavesTheOtherNamesOfTheOldOneAlone) {
  const TestFolder folder;
  const std::string name = folder.file("out", "old");
  fs::create_hard_link(name, folder.path("kept"));
  write(name, "new");
  EXPECT_EQ(content_of(name), "new");
  EXPECT_EQ(content_of(folder.path("kept")), "old");
}

TEST(ResultFile, KeepsALinkAndReplacesItsTarget) {
  const TestFolder folder;
  fs::create_directory(folder.path("results"));
  folder.file("results/target", "old");
  fs::create_symlink("results/second", folder.path("first"));
  fs::create_symlink("target", folder.path("results/second"));
  ResultFile result(folder.path("first"));
  EXPECT_FALSE(fs::exists(folder.path("results/target")));
  write(result, "new");
  EXPECT_EQ(fs::read_symlink(folder.path("first")), "results/second");
  EXPECT_EQ(fs::read_symlink(folder.path("results/second")), "target");
  EXPECT_FALSE(fs::is_symlink(folder.path("results/target")));
  EXPECT_EQ(content_of(folder.path("results/target")), "new");
}

TEST(ResultFile, FillsALinkThatLeadsToNothing) {
  const TestFolder folder;
  fs::create_symlink(folder.path("target"), folder.path("link"));
  write(folder.path("link"), "new");
  EXPECT_TRUE(fs::is_symlink(folder.path("link")));
  EXPECT_EQ(content_of(folder.path("target")), "new");
}

TEST(ResultFile, FollowsLinksThatNameAnOpenFile) {
  const TestFolder folder;
  std::FILE* const opened = std::fopen(folder.path("out").c_str(), "w");
  ASSERT_NE(opened, nullptr);
  const std::string name = "/proc/self/fd/" + std::to_string(::fileno(opened));
  write(name, "text");
  std::fclose(opened);
  EXPECT_EQ(folder.names(), Names({"out"}));
  EXPECT_EQ(content_of(folder.path("out")), "text");
}

TEST(ResultFile, ReplacesWhatHasTakenItsPlaceMeanwhile) {
  const TestFolder folder;
  ResultFile result(folder.path("out"));
  result.stage("new");
  folder.file("out", "of somebody else");
  result.publish();
  EXPECT_EQ(content_of(folder.path("out")), "new");
  EXPECT_EQ(folder.names(), Names({"out"}));
}

TEST(ResultFile, LeavesNothingWhereItIsNeverPublished) {
  const TestFolder folder;
  {
    ResultFile result(folder.path("out"));
    result.stage("new");
  }
  EXPECT_EQ(folder.names(), Names());
}

TEST(ResultFile, CanBeWithdrawn) {
  const TestFolder folder;
  ResultFile result(folder.path("out"));
  write(result, "new");
  EXPECT_EQ(folder.names(), Names({"out"}));
  result.withdraw();
  EXPECT_EQ(folder.names(), Names());
}

}  // namespace
}  // namespace sdpsol
