// Several outputs of one run: which names may stand beside each other, what becomes of
// old files, and all or nothing.
#include "solver/command/outputs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "tests/support/test_folder.h"

namespace sdpsol {
namespace {

using test_support::content_of;
using test_support::TestFolder;

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

Options options(const std::string& definition, const std::string& result,
                const std::optional<std::string>& json = std::nullopt,
                const std::optional<std::string>& exported = std::nullopt,
                const std::optional<std::string>& exported_margin = std::nullopt) {
  Options named;
  named.definition = definition;
  named.result = result;
  named.json = json;
  named.exported = exported;
  named.exported_margin = exported_margin;
  return named;
}

std::string opening(const Options& named) {
  try {
    const Outputs outputs(named);
  } catch (const UsageError& error) {
    return std::string("usage: ") + error.what();
  } catch (const FileError& error) {
    return error.what();
  }
  return "nothing was thrown";
}

std::string writing(Outputs& outputs, Outputs::Texts texts) {
  try {
    outputs.write(std::move(texts));
  } catch (const FileError& error) {
    return error.what();
  }
  return "nothing was thrown";
}

std::string in_quotes(const std::string& name) {
  return "'" + name + "'";
}

std::string same_file(const std::string& one, const std::string& other) {
  return "usage: " + one + " and " + other + " are the same file";
}

TEST(Outputs, AreNotTheInputUnderAnyName) {
  const TestFolder folder;
  const std::string input = folder.file("in", "text");
  fs::create_hard_link(input, folder.path("hard"));
  fs::create_symlink("in", folder.path("soft"));
  fs::create_symlink(folder.path("soft"), folder.path("softer"));
  const std::string longer = folder.path() + "/./in";
  for (const std::string& other :
       {input, folder.path("hard"), folder.path("soft"), folder.path("softer"), longer}) {
    const std::string complaint = same_file(in_quotes(input), in_quotes(other));
    EXPECT_EQ(opening(options(input, other)), complaint);
    EXPECT_EQ(opening(options(other, input)), same_file(in_quotes(other), in_quotes(input)));
    EXPECT_EQ(opening(options(input, "-", other)), complaint);
    EXPECT_EQ(opening(options(input, "-", folder.path("x"), other)), complaint);
    EXPECT_EQ(opening(options(input, "-", folder.path("x"), folder.path("y"), other)), complaint);
  }
  EXPECT_EQ(folder.names(), Names({"hard", "in", "soft", "softer"}));
  EXPECT_EQ(content_of(input), "text");
}

TEST(Outputs, AreFilesOfTheirOwn) {
  const TestFolder folder;
  const std::string in = folder.file("in", "text");
  const std::string out = folder.file("out", "old");
  fs::create_hard_link(out, folder.path("hard"));
  fs::create_symlink("out", folder.path("soft"));
  for (const std::string& other : {out, folder.path("hard"), folder.path("soft")}) {
    const std::string complaint = same_file(in_quotes(out), in_quotes(other));
    EXPECT_EQ(opening(options(in, out, other)), complaint);
    EXPECT_EQ(opening(options(in, "-", "/dev/null", out, other)), complaint);
  }
  EXPECT_EQ(content_of(out), "old");
}

TEST(Outputs, AreFilesOfTheirOwnBeforeTheyExist) {
  const TestFolder folder;
  const std::string in = folder.file("in", "text");
  fs::create_directory(folder.path("real"));
  fs::create_directory_symlink("real", folder.path("folder"));
  fs::create_symlink("real/new", folder.path("link"));
  const std::string name = folder.path("real/new");
  for (const std::string& other :
       {name, folder.path("folder/new"), folder.path("real/../folder/new"), folder.path("link")}) {
    EXPECT_EQ(opening(options(in, name, other)), same_file(in_quotes(name), in_quotes(other)));
  }
  EXPECT_EQ(opening(options(in, name, folder.path("new"))), "nothing was thrown");
  EXPECT_EQ(opening(options(in, name, folder.path("real/other"))), "nothing was thrown");
}

TEST(Outputs, AreNotLinksThatLeadToEachOther) {
  const TestFolder folder;
  const std::string in = folder.file("in", "text");
  fs::create_symlink("b", folder.path("a"));
  fs::create_symlink("a", folder.path("b"));
  EXPECT_EQ(opening(options(in, folder.path("a"), "-")),
            "cannot write " + in_quotes(folder.path("a")) + ": Too many levels of symbolic links");
}

TEST(Outputs, GoToStandardOutputOnce) {
  const TestFolder folder;
  const std::string in = folder.file("in", "text");
  const std::string old = folder.file("old", "kept");
  EXPECT_EQ(opening(options(in, "-", "-")), "usage: two outputs go to standard output");
  EXPECT_EQ(opening(options(in, old, "-", "-")), "usage: two outputs go to standard output");
  EXPECT_EQ(content_of(old), "kept");
}

/// A standard stream comes from a file, or goes to one, while it lives.
class Redirected {
 public:
  Redirected(int stream, const std::string& path, int flags)
      : stream_(stream), before_(::dup(stream)) {
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC);
    if (fd < 0 || ::dup2(fd, stream) < 0) throw std::runtime_error(path);
    ::close(fd);
  }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;
  ~Redirected() {
    ::dup2(before_, stream_);
    ::close(before_);
  }

 private:
  int stream_;
  int before_;
};

TEST(Outputs, AreNotWhatStandardInputComesFrom) {
  const TestFolder folder;
  const std::string name = folder.file("in", "text");
  const Redirected input(STDIN_FILENO, name, O_RDONLY);
  EXPECT_EQ(opening(options("-", name)), same_file("standard input", in_quotes(name)));
  EXPECT_EQ(opening(options("-", "/dev/null", name)), same_file("standard input", in_quotes(name)));
  EXPECT_EQ(content_of(name), "text");
  EXPECT_EQ(read_whole_file("-", 4), "text");
}

TEST(Outputs, AreNotWhatStandardOutputGoesTo) {
  const TestFolder folder;
  const std::string in = folder.file("in", "text");
  const std::string name = folder.file("out", "begun");
  std::string as_json;
  std::string into_the_input;
  {
    const Redirected output(STDOUT_FILENO, name, O_WRONLY | O_APPEND);
    as_json = opening(options(in, "-", name));
  }
  {
    const Redirected output(STDOUT_FILENO, in, O_WRONLY | O_APPEND);
    into_the_input = opening(options(in, "-"));
  }
  EXPECT_EQ(as_json, same_file("standard output", in_quotes(name)));
  EXPECT_EQ(into_the_input, same_file(in_quotes(in), "standard output"));
  EXPECT_EQ(content_of(name), "begun");
  EXPECT_EQ(content_of(in), "text");
}

TEST(Outputs, HaveNames) {
  const TestFolder folder;
  const std::string in = folder.file("in", "text");
  const std::string old = folder.file("old", "kept");
  EXPECT_EQ(opening(options(in, "")), "usage: the name of an output file is empty");
  EXPECT_EQ(opening(options(in, old, "")), "usage: the name of an output file is empty");
  EXPECT_EQ(content_of(old), "kept");
}

TEST(Outputs, LoseTheirOldFilesEvenIfOneOfThemCannotBeWritten) {
  const TestFolder folder;
  const std::string in = folder.file("in", "text");
  for (const char* name : {"a", "b", "c"}) folder.file(name, "stale");
  const std::string nowhere = folder.path("no/out");
  EXPECT_EQ(opening(options(in, folder.path("a"), nowhere, folder.path("b"), folder.path("c"))),
            "cannot write '" + nowhere + "': No such file or directory");
  EXPECT_EQ(folder.names(), Names({"in"}));
}

TEST(Outputs, AppearTogether) {
  const TestFolder folder;
  Outputs outputs(options(folder.file("in", "text"), folder.path("a"), folder.path("b")));
  EXPECT_TRUE(outputs.wants(Output::kResult));
  EXPECT_TRUE(outputs.wants(Output::kJson));
  EXPECT_FALSE(outputs.wants(Output::kExport));
  EXPECT_EQ(writing(outputs, {{Output::kResult, "result"}, {Output::kJson, "json"}}),
            "nothing was thrown");
  EXPECT_EQ(content_of(folder.path("a")), "result");
  EXPECT_EQ(content_of(folder.path("b")), "json");
}

TEST(Outputs, DoNotAppearIfOneOfThemCannotBeWritten) {
  const TestFolder folder;
  fs::create_directory(folder.path("sub"));
  Outputs outputs(
      options(folder.file("in", "text"), folder.path("a"), folder.path("sub/b"), folder.path("c")));
  fs::remove(folder.path("sub"));
  EXPECT_EQ(
      writing(outputs,
              {{Output::kResult, "result"}, {Output::kJson, "json"}, {Output::kExport, "export"}}),
      "cannot write '" + folder.path("sub/b") + "': No such file or directory");
  EXPECT_EQ(folder.names(), Names({"in"}));
}

TEST(Outputs, DoNotAppearIfOneOfThemCannotHaveItsName) {
  const TestFolder folder;
  Outputs outputs(options(folder.file("in", "text"), folder.path("a"), folder.path("b")));
  fs::create_directory(folder.path("b"));
  EXPECT_EQ(writing(outputs, {{Output::kResult, "result"}, {Output::kJson, "json"}}),
            "cannot write '" + folder.path("b") + "': Is a directory");
  EXPECT_EQ(folder.names(), Names({"b", "in"}));
}

TEST(Outputs, DoNotAppearIfThePipeBesideThemHasNoReader) {
  const TestFolder folder;
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  ::close(ends[0]);
  auto* const before = std::signal(SIGPIPE, SIG_IGN);
  const std::string name = "/proc/self/fd/" + std::to_string(ends[1]);
  Outputs outputs(options(folder.file("in", "text"), folder.path("a"), name));
  EXPECT_EQ(writing(outputs, {{Output::kResult, "result"}, {Output::kJson, "json"}}),
            "cannot write '" + name + "': Broken pipe");
  std::signal(SIGPIPE, before);
  ::close(ends[1]);
  EXPECT_FALSE(fs::exists(folder.path("a")));
}

}  // namespace
}  // namespace sdpsol
