// What holds only while an instance is created, and only in the host's thread.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/host_fixture.h"

namespace zelhost {
namespace {

TEST_F(HostTest, IsBuiltUponWhileAnInstanceIsCreatedOnly) {
  def_unittype* group = nullptr;
  const Instance built = instance([&group](def_unittype* root) {
    group = primitive_unit(TAG_END, root);
    zel_name_unit("Group", group);
  });
  EXPECT_EQ(primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_END, group), nullptr);
  zel_name_unit("Other", group);
  zel_indicate_export_of_methods(group);
  return_unit(group);
  label(group, "late");
  const Unit& unit = *built.root().children().front();
  EXPECT_TRUE(unit.children().empty());
  EXPECT_EQ(unit.name, "Group");
  EXPECT_FALSE(unit.exports);
  EXPECT_EQ(unit.label, "");
  EXPECT_EQ(is_not_unit(group), 0);
  Texts expected;
  for (const char* const operation : {"primitive_unit", "zel_name_unit",
                                      "zel_indicate_export_of_methods", "return_unit", "label"})
    expected.push_back(std::string("misuse: ") + operation +
                       ": called while no instance is created");
  EXPECT_EQ(said(), expected);
}

// A short text lives where the host keeps it, a long one elsewhere.
TEST_F(HostTest, OverwritesTheTextsOfTheDialogOnceTheInstanceIsCreated) {
  const char* brief = nullptr;
  const char* lengthy = nullptr;
  instance(
      [&](def_unittype*) {
        brief = TVAL(0);
        lengthy = TVAL(1);
      },
      {"10", "a text that is longer than most"});
  // The next dialog's texts are in another place.
  instance([](def_unittype*) { EXPECT_STREQ(TVAL(0), "another"); }, {"another"});
  EXPECT_STREQ(brief, "??");
  EXPECT_STREQ(lengthy, std::string(31, '?').c_str());
}

TEST_F(HostTest, OverwritesTheTextsOfTheDialogAlsoWhenThePluginThrows) {
  const char* text = nullptr;
  creating = [&text](def_unittype*) -> def_unittype* {
    text = TVAL(0);
    throw std::runtime_error("no");
  };
  EXPECT_THROW(host_.create(kIcon, {"text"}), std::runtime_error);
  EXPECT_STREQ(text, "????");
}

TEST_F(HostTest, AdmitsNoOperationFromAnotherThread) {
  def_unittype* root = nullptr;
  instance(
      [&root](def_unittype* made) {
        root = made;
        std::thread([made] {
          EXPECT_EQ(TVAL(0), nullptr);
          zel_name_unit("other", made);
        }).join();
      },
      {"text"});
  EXPECT_EQ(said(), (Texts{"misuse: TVAL: called from another thread than the host's",
                           "misuse: zel_name_unit: called from another thread than the host's"}));
  std::thread([root] {
    for (int i = 0; i < 1000; ++i) EXPECT_NE(is_not_unit(root), 0);
    EXPECT_EQ(error_msg(30, "other", 1, 0), 0);
  }).join();
  EXPECT_EQ(said(), (Texts{"misuse: error_msg: called from another thread than the host's",
                           "misuse: is_not_unit: called from another thread than the host's"}));
  EXPECT_EQ(is_not_unit(root), 0);
  EXPECT_EQ(said(), Texts{});
}

TEST_F(HostTest, SaysThatThereIsNoInstanceBecauseAnotherThreadWasToMakeIt) {
  creating = [](def_unittype* parent) {
    def_unittype* root = nullptr;
    std::thread([&] { root = primitive_unit(TAG_END, parent); }).join();
    return root;
  };
  try {
    host_.create(kIcon, {});
    ADD_FAILURE() << "no error";
  } catch (const CreationError& error) {
    EXPECT_STREQ(error.what(),
                 "icon test: no instance was created; primitive_unit: called from another thread "
                 "than the host's");
  }
}

}  // namespace
}  // namespace zelhost
