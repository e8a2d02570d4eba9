// Results that go to devices and pipes, and results that cannot be written:
// the old one is gone, nothing of the new one stays.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "solver/command/files.h"
#include "tests/support/test_folder.h"

namespace sdpsol {
namespace {

using test_support::content_of;
using test_support::TestFolder;

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

std::string opening(const std::string& name) {
  try {
    const ResultFile result(name);
  } catch (const FileError& error) {
    return error.what();
  }
  return "nothing was thrown";
}

std::string writing(ResultFile& result, const std::string& text) {
  try {
    result.stage(text);
    result.publish();
  } catch (const FileError& error) {
    return error.what();
  }
  return "nothing was thrown";
}

std::string writing(const std::string& name, const std::string& text) {
  ResultFile result(name);
  return writing(result, text);
}

/// A device of our own with the numbers of a well-known one; "" and the reason
/// in errno where that is not allowed.
std::string device(const TestFolder& folder, const char* name, unsigned minor_number) {
  constexpr unsigned kMemoryDevices = 1;
  std::string path = folder.path(name);
  if (::mknod(path.c_str(), S_IFCHR | 0666, makedev(kMemoryDevices, minor_number)) != 0) return "";
  const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (fd < 0) return "";
  ::close(fd);
  return path;
}

TEST(ResultInADevice, IsWrittenIntoIt) {
  const TestFolder folder;
  const std::string null = device(folder, "null", 3);
  if (null.empty()) GTEST_SKIP() << "no device can be made here: " << std::strerror(errno);
  EXPECT_EQ(writing(null, "text"), "nothing was thrown");
  EXPECT_TRUE(fs::is_character_file(null));
  EXPECT_EQ(folder.names(), Names({"null"}));
}

TEST(ResultInADevice, ThatIsFullIsAnError) {
  const TestFolder folder;
  const std::string full = device(folder, "full", 7);
  if (full.empty()) GTEST_SKIP() << "no device can be made here: " << std::strerror(errno);
  fs::create_symlink("full", folder.path("link"));
  for (const std::string& name : {full, folder.path("link")}) {
    EXPECT_EQ(writing(name, "text"), "cannot write '" + name + "': No space left on device");
  }
  EXPECT_TRUE(fs::is_character_file(full));
  EXPECT_EQ(folder.names(), Names({"full", "link"}));
}

TEST(ResultInAPipe, IsWrittenIntoIt) {
  const TestFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0) << std::strerror(errno);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  EXPECT_EQ(writing(pipe, "text"), "nothing was thrown");
  std::array<char, 16> buffer{};
  EXPECT_EQ(::read(reader, buffer.data(), buffer.size()), 4);
  EXPECT_STREQ(buffer.data(), "text");
  ::close(reader);
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_EQ(folder.names(), Names({"pipe"}));
}

TEST(ResultInAPipe, ThatHasNoNameIsWrittenIntoIt) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  EXPECT_EQ(writing("/proc/self/fd/" + std::to_string(ends[1]), "text"), "nothing was thrown");
  std::array<char, 16> buffer{};
  EXPECT_EQ(::read(ends[0], buffer.data(), buffer.size()), 4);
  EXPECT_STREQ(buffer.data(), "text");
  for (const int end : ends) ::close(end);
}

TEST(ResultThatCannotBeWritten, IsADirectory) {
  const TestFolder folder;
  fs::create_directory(folder.path("out"));
  fs::create_directory_symlink("out", folder.path("link"));
  for (const char* name : {"out", "out/", "out/.", "link"}) {
    EXPECT_EQ(opening(folder.path(name)),
              "cannot write '" + folder.path(name) + "': Is a directory");
  }
  EXPECT_EQ(folder.names(), Names({"link", "out"}));
}

TEST(ResultThatCannotBeWritten, HasNoDirectory) {
  const TestFolder folder;
  const std::string file = folder.file("file", "kept");
  EXPECT_EQ(opening(folder.path("no/out")),
            "cannot write '" + folder.path("no/out") + "': No such file or directory");
  EXPECT_EQ(opening(folder.path("new/")),
            "cannot write '" + folder.path("new/") + "': No such file or directory");
  EXPECT_EQ(opening(file + "/out"), "cannot write '" + file + "/out': Not a directory");
  EXPECT_EQ(content_of(file), "kept");
}

TEST(ResultThatCannotBeWritten, IsALinkInACircle) {
  const TestFolder folder;
  fs::create_symlink("b", folder.path("a"));
  fs::create_symlink("a", folder.path("b"));
  EXPECT_EQ(opening(folder.path("a")),
            "cannot write '" + folder.path("a") + "': Too many levels of symbolic links");
  EXPECT_EQ(folder.names(), Names({"a", "b"}));
}

/// Gives up the rights of root, if we have them, for as long as it lives.
class WithoutPrivileges {
 public:
  WithoutPrivileges() : root_(::geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    if (root_ && ::setresuid(kNobody, kNobody, 0) != 0) throw std::runtime_error("setresuid");
  }
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
  ~WithoutPrivileges() {
    if (root_ && (::seteuid(0) != 0 || ::setresuid(0, 0, 0) != 0)) std::abort();
  }

 private:
  bool root_;
};

TEST(ResultThatCannotBeWritten, StandsInADirectoryWithoutTheRight) {
  const TestFolder folder;
  const std::string name = folder.file("out", "old");
  fs::permissions(folder.path(), fs::perms(0555));
  std::string message;
  std::string new_message;
  {
    const WithoutPrivileges scope;
    message = opening(name);
    new_message = opening(folder.path("new"));
  }
  fs::permissions(folder.path(), fs::perms(0755));
  EXPECT_EQ(message, "cannot write '" + name + "': Permission denied");
  EXPECT_EQ(new_message, "cannot write '" + folder.path("new") + "': Permission denied");
  EXPECT_EQ(content_of(name), "old");
}

/// Sixteen KiB of disk in a folder, seen by this process alone; ready() is false
/// where mounting is not allowed.
class SmallDisk {
 public:
  explicit SmallDisk(std::string path) : path_(std::move(path)) {
    ready_ = ::unshare(CLONE_NEWNS) == 0 &&
             ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
             ::mount("tmpfs", path_.c_str(), "tmpfs", 0, "size=16k") == 0;
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (ready_) ::umount(path_.c_str());
  }
  bool ready() const { return ready_; }

 private:
  std::string path_;
  bool ready_ = false;
};

TEST(ResultThatCannotBeWritten, FindsTheDiskFull) {
  const TestFolder folder;
  const SmallDisk disk(folder.path());
  if (!disk.ready()) GTEST_SKIP() << "nothing can be mounted here: " << std::strerror(errno);
  const std::string name = folder.file("out", "old");
  ResultFile result(name);
  EXPECT_EQ(writing(result, std::string(100'000, 'x')),
            "cannot write '" + name + "': No space left on device");
  EXPECT_EQ(folder.names(), Names());
  EXPECT_EQ(writing(result, std::string(10'000, 'x')), "nothing was thrown");
  EXPECT_EQ(folder.names(), Names({"out"}));
}

TEST(ResultThatCannotBeWritten, LosesItsDirectoryMeanwhile) {
  const TestFolder folder;
  fs::create_directory(folder.path("sub"));
  ResultFile result(folder.path("sub/out"));
  fs::remove(folder.path("sub"));
  EXPECT_EQ(writing(result, "text"),
            "cannot write '" + folder.path("sub/out") + "': No such file or directory");
}

TEST(ResultThatCannotBeWritten, FindsADirectoryInItsPlace) {
  const TestFolder folder;
  ResultFile result(folder.path("out"));
  fs::create_directory(folder.path("out"));
  EXPECT_EQ(writing(result, "text"), "cannot write '" + folder.path("out") + "': Is a directory");
  EXPECT_EQ(folder.names(), Names({"out"}));
}

}  // namespace
}  // namespace sdpsol
