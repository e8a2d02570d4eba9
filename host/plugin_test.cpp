// Finding and loading plug-ins.
#include "host/plugin.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/message_of.h"
#include "tests/support/test_folder.h"

namespace zelhost {
namespace {

using test_support::message_of;
using test_support::TestFolder;

namespace fs = std::filesystem;

const fs::path kLibraries = SDPSOL_BIN_DIR "/../lib";

TEST(LoadPlugin, ReadsTheRecords) {
  const Plugin plugin = load_plugin(kLibraries / "sdpsol.so");
  EXPECT_EQ(plugin.version, "7.9 17/07/02 QZ");
  EXPECT_EQ(plugin.folder, "sdpsol");
  ASSERT_EQ(plugin.icons.size(), 1U);
  const Icon* const icon = plugin.find("sdpsol");
  ASSERT_EQ(icon, &plugin.icons.front());
  EXPECT_EQ(icon->fields, (std::vector<DialogField>{{"sdpsol command", "sdpsol"},
                                                    {"definition file", "sdpsol.in"},
                                                    {"result file", "sdpsol.out"}}));
  EXPECT_EQ(icon->presets(), (std::vector<std::string>{"sdpsol", "sdpsol.in", "sdpsol.out"}));
  EXPECT_EQ(plugin.find("other"), nullptr);
}

TEST(LoadPlugin, SaysWhatIsNoLibrary) {
  const TestFolder folder;
  const auto text = folder.file("text.so", "not a library");
  EXPECT_EQ(message_of<PluginError>([&] { load_plugin(text); }), text + ": file too short");
  const auto nothing = folder.path("nothing.so");
  EXPECT_EQ(message_of<PluginError>([&] { load_plugin(nothing); }),
            nothing + ": cannot open shared object file: No such file or directory");
}

TEST(LoadPlugin, SaysWhichRecordIsMissing) {
  const TestFolder folder;
  // A plug-in under another name looks like one without records.
  fs::copy_file(kLibraries / "sdpsol.so", folder.path("other.so"));
  EXPECT_EQ(message_of<PluginError>([&] { load_plugin(folder.path("other.so")); }),
            folder.path("other.so") +
                ": there is no record Kem_V_of_other (a plug-in's records end in the name of its "
                "file, and are exported)");
}

class FindPlugin : public testing::Test {
 protected:
  FindPlugin() {
    for (const auto& name : {"a/one.so", "b/one.so", "b/two.so"}) {
      fs::create_directories(fs::path(folder_.path(name)).parent_path());
      folder_.file(name, "");
    }
  }

  fs::path find(const std::string& name) const {
    return fs::relative(find_plugin(name, folder_.path(), {folder_.path("a"), b_}), folder_.path());
  }

  TestFolder folder_;
  fs::path b_ = folder_.path("b");
};

TEST_F(FindPlugin, LooksThroughTheFoldersInTheirOrder) {
  EXPECT_EQ(find("one"), "a/one.so");
  EXPECT_EQ(find("one.so"), "a/one.so");
  EXPECT_EQ(find("two"), "b/two.so");
}

TEST_F(FindPlugin, TakesANameWithASlashAsAPath) {
  EXPECT_EQ(find("b/one.so"), "b/one.so");
  EXPECT_EQ(find("./b/one"), "b/one.so");
  EXPECT_EQ(find(b_ / "two.so"), "b/two.so");
}

TEST_F(FindPlugin, SaysWhereItHasLooked) {
  EXPECT_EQ(message_of<PluginError>([&] { find("three"); }),
            "no plug-in three.so in " + folder_.path() + "/a, " + b_.string());
  EXPECT_EQ(message_of<PluginError>([&] { find("c/one"); }),
            folder_.path() + "/c/one.so: no such file");
}

TEST_F(FindPlugin, SaysThatANameIsTooLong) {
  const std::string name(5'000, 'n');
  const std::string shown = std::string(1'000, 'n') + "...";
  EXPECT_EQ(message_of<PluginError>([&] { find(name); }),
            "no plug-in " + shown + " in " + folder_.path() + "/a (File name too long), " +
                b_.string() + " (File name too long)");
  EXPECT_EQ(message_of<PluginError>([&] { find("/" + name); }),
            "/" + shown.substr(1) + ": File name too long");
}

}  // namespace
}  // namespace zelhost
