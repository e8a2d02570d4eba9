// The operations as plug-ins call them: what they do, and what the host says
// about those who misuse them.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/host_fixture.h"

namespace zelhost {
namespace {

int fired = 0;

int count_firing(def_unittype*) {
  return ++fired, 0;
}

int fail_with_7(def_unittype*) {
  return 7;
}

TEST_F(HostTest, ThereIsOneAtATime) {
  EXPECT_THROW(Host(), std::logic_error);
}

TEST_F(HostTest, BuildsTheTreeThatThePluginAsksFor) {
  const Instance built = instance([](def_unittype* root) {
    def_unittype* const group = primitive_unit(TAG_END, root);
    zel_name_unit("Group", group);
    zel_indicate_export_of_methods(group);
    def_unittype* const method =
        primitive_unit(TAG_INP, TAG_FLOAT, 6, TAG_INP, TAG_STRING, 1, TAG_OUT, TAG_DYN, "F",
                       TAG_OUT, TAG_DYN, "I", TAG_END, group);
    zel_name_unit("Method", method);
    zel_set_method(method, count_firing);
  });
  ASSERT_EQ(built.methods().size(), 1U);
  const Method& method = built.methods().front();
  EXPECT_EQ(method.name, "Group:Method");
  ASSERT_EQ(method.unit->inputs().size(), 2U);
  EXPECT_EQ(method.unit->inputs()[0].type(), (PortType{PortKind::kFloats, 6}));
  EXPECT_EQ(method.unit->inputs()[1].type(), (PortType{PortKind::kText, 1}));
  ASSERT_EQ(method.unit->outputs().size(), 2U);
  EXPECT_EQ(method.unit->outputs()[0].type(), (PortType{PortKind::kFloatArray, 1}));
  EXPECT_EQ(method.unit->outputs()[1].type(), (PortType{PortKind::kIntegerArray, 1}));
  EXPECT_EQ(built.root().label, "test");
  EXPECT_EQ(built.root().parent(), &host_.environment());
  EXPECT_EQ(zel_parent(method.unit->record()), method.unit->parent()->record());
  EXPECT_EQ(said(), Texts{});
}

TEST_F(HostTest, HidesMethodsBelowAUnitThatExportsNone) {
  const Instance built = instance([](def_unittype* root) {
    def_unittype* const group = primitive_unit(TAG_END, root);
    zel_name_unit("Group", group);
    def_unittype* const method = primitive_unit(TAG_END, group);
    zel_name_unit("Method", method);
    zel_set_method(method, count_firing);
  });
  EXPECT_TRUE(built.methods().empty());
}

TEST_F(HostTest, FiresMethods) {
  const Instance built = instance([](def_unittype* root) {
    def_unittype* const method = primitive_unit(TAG_END, root);
    zel_name_unit("Method", method);
    zel_set_method(method, count_firing);
    def_unittype* const failing = primitive_unit(TAG_END, root);
    zel_name_unit("Failing", failing);
    zel_set_method(failing, fail_with_7);
  });
  fired = 0;
  EXPECT_EQ(host_.fire(*built.find("Method")->unit), 0);
  EXPECT_EQ(fired, 1);
  EXPECT_EQ(host_.fire(*built.find("Failing")->unit), 7);
  EXPECT_THROW(host_.fire(built.root()), std::invalid_argument);
  EXPECT_EQ(built.find("Nothing"), nullptr);
}

std::string published;

// Publishes a text that is another one at the next call.
int publish(def_unittype* unit) {
  published = "text " + std::to_string(zel_float_inp(unit, 0, 0));
  zel_set_text_out(unit, 0, published.c_str());
  if (zel_float_inp(unit, 0, 0) == 3) throw std::runtime_error("enough");
  return 0;
}

TEST_F(HostTest, KeepsTextsThatMethodsPublish) {
  const Instance built = instance([](def_unittype* root) {
    def_unittype* const method =
        primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_OUT, TAG_STRING, 1, TAG_END, root);
    zel_name_unit("Publish", method);
    zel_set_method(method, publish);
  });
  Unit& unit = *built.find("Publish")->unit;
  for (const float number : {1.0F, 2.0F}) {
    unit.inputs()[0].set(std::vector<float>{number});
    EXPECT_EQ(host_.fire(unit), 0);
    published[0] = 'T';
    EXPECT_EQ(unit.outputs()[0].value(), PortValue("text " + std::to_string(number)));
  }
  unit.inputs()[0].set(std::vector<float>{3});
  EXPECT_THROW(host_.fire(unit), std::runtime_error);
  EXPECT_EQ(unit.outputs()[0].value(), PortValue("text " + std::to_string(2.0F)));
}

TEST_F(HostTest, RefusesDescriptorsThatAreNone) {
  instance([](def_unittype* root) {
    EXPECT_EQ(primitive_unit(5, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_FLOAT, 1, TAG_END, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_INP, TAG_OUT, TAG_END, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_INP, TAG_FLOAT, 0, TAG_END, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_INP, TAG_FLOAT, 1'000'001, TAG_END, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_INP, TAG_STRING, 2, TAG_END, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_OUT, TAG_DYN, "D", TAG_END, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_OUT, TAG_DYN, static_cast<const char*>(nullptr), TAG_END, root),
              nullptr);
  });
  const std::string no_element =
      "misuse: primitive_unit: TAG_DYN with an element type that is neither \"F\" nor \"I\"";
  EXPECT_EQ(said(),
            (Texts{"misuse: primitive_unit: neither TAG_INP, TAG_OUT nor TAG_END: 5",
                   "misuse: primitive_unit: neither TAG_INP, TAG_OUT nor TAG_END: -99999994",
                   "misuse: primitive_unit: no port kind: -99999998",
                   "misuse: primitive_unit: TAG_FLOAT with count 0",
                   "misuse: primitive_unit: TAG_FLOAT with count 1000001, the most is 1000000",
                   "misuse: primitive_unit: TAG_STRING with count 2", no_element, no_element}));
}

TEST_F(HostTest, KnowsItsOwnUnits) {
  def_unittype foreign{};
  instance([&](def_unittype* root) {
    EXPECT_EQ(is_not_unit(root), 0);
    EXPECT_NE(is_not_unit(nullptr), 0);
    EXPECT_NE(is_not_unit(&foreign), 0);
    EXPECT_EQ(primitive_unit(TAG_END, static_cast<def_unittype*>(nullptr)), nullptr);
    EXPECT_EQ(primitive_unit(TAG_END, &foreign), nullptr);
    zel_name_unit("x", nullptr);
    zel_indicate_export_of_methods(&foreign);
    return_unit(nullptr);
    label(&foreign, "x");
  });
  EXPECT_EQ(said(),
            (Texts{"misuse: primitive_unit: the unit is null",
                   "misuse: primitive_unit: the unit is none of this host's",
                   "misuse: zel_name_unit: the unit is null",
                   "misuse: zel_indicate_export_of_methods: the unit is none of this host's",
                   "misuse: return_unit: the unit is null",
                   "misuse: label: the unit is none of this host's"}));
}

TEST_F(HostTest, WantsNamesThatTellSiblingsApart) {
  instance([](def_unittype* root) {
    zel_name_unit("A", primitive_unit(TAG_END, root));
    zel_name_unit("A", primitive_unit(TAG_END, root));
    zel_name_unit("", primitive_unit(TAG_END, root));
    zel_name_unit(nullptr, primitive_unit(TAG_END, root));
    label(root, nullptr);
  });
  EXPECT_EQ(said(),
            (Texts{"misuse: zel_name_unit: a sibling is named \"A\" already",
                   "misuse: zel_name_unit: the name is empty",
                   "misuse: zel_name_unit: the name is empty", "misuse: label: the text is null"}));
}

TEST_F(HostTest, IsNotNamedByAPlugin) {
  creating = [](def_unittype* parent) {
    zel_name_unit("mine", parent);
    return primitive_unit(TAG_END, parent);
  };
  host_.create(kIcon, {});
  EXPECT_EQ(host_.environment().name, "");
  EXPECT_EQ(said(), Texts{"misuse: zel_name_unit: the unit is the host's own"});
}

TEST_F(HostTest, WantsTheRootOnceAndBeforeItsChildren) {
  instance([](def_unittype* root) { return_unit(root); });
  EXPECT_EQ(said(), Texts{"misuse: return_unit: called a second time"});
  creating = [](def_unittype* parent) {
    def_unittype* const root = primitive_unit(TAG_END, parent);
    primitive_unit(TAG_END, root);
    return_unit(root);
    return root;
  };
  host_.create(kIcon, {});
  EXPECT_EQ(said(), Texts{"misuse: return_unit: the root has children already"});
}

TEST_F(HostTest, HandsOutTheTextsOfTheDialog) {
  instance(
      [](def_unittype*) {
        EXPECT_STREQ(TVAL(0), "command");
        EXPECT_STREQ(TVAL(1), "");
        EXPECT_EQ(TVAL(2), nullptr);
        EXPECT_EQ(TVAL(-1), nullptr);
      },
      {"command", ""});
  EXPECT_EQ(said(), (Texts{"misuse: TVAL: the dialog has no field 2",
                           "misuse: TVAL: the dialog has no field -1"}));
}

TEST_F(HostTest, KeepsTheTextsOfMethodsAndPorts) {
  const Instance built = instance([](def_unittype* root) {
    kem_iconform_for_method("Method", " help %n", 0, 0);
    SET_INFO_FOR_METHOD("Method");
    INFO_FOR_INP(0, "in");
    INFO_FOR_OUT(0, "out");
    INFO_FOR_OUT(1, "more");
    kem_iconform_for_method("Nobody", "none", 0, 0);
    def_unittype* const method = primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_END, root);
    zel_name_unit("Method", method);
    zel_set_method(method, count_firing);
  });
  const MethodText& text = built.find("Method")->text;
  EXPECT_EQ(text.help, " help %n");
  EXPECT_EQ(text.inputs, (std::map<int, std::string>{{0, "in"}}));
  EXPECT_EQ(text.outputs, (std::map<int, std::string>{{0, "out"}, {1, "more"}}));
  EXPECT_EQ(built.texts().count("Nobody"), 1U);
}

TEST_F(HostTest, SaysWhatIsWrongWithDescriptions) {
  instance([](def_unittype*) {
    INFO_FOR_INP(0, "early");
    kem_iconform_for_method(nullptr, "x", 0, 0);
    kem_iconform_for_method("x", nullptr, 0, 0);
    SET_INFO_FOR_METHOD(nullptr);
    SET_INFO_FOR_METHOD("x");
    INFO_FOR_INP(-1, "x");
    INFO_FOR_OUT(0, nullptr);
  });
  EXPECT_EQ(said(), (Texts{"misuse: INFO_FOR_INP: no method is selected",
                           "misuse: kem_iconform_for_method: a text is null",
                           "misuse: kem_iconform_for_method: a text is null",
                           "misuse: SET_INFO_FOR_METHOD: the name is null",
                           "misuse: INFO_FOR_INP: port -1, text \"x\"",
                           "misuse: INFO_FOR_OUT: port 0, text null"}));
}

TEST_F(HostTest, WantsDescriptionsWhileAnInstanceIsCreated) {
  kem_iconform_for_method("x", "x", 0, 0);
  SET_INFO_FOR_METHOD("x");
  INFO_FOR_INP(0, "x");
  EXPECT_EQ(TVAL(0), nullptr);
  EXPECT_EQ(said(), (Texts{"misuse: kem_iconform_for_method: called while no instance is created",
                           "misuse: SET_INFO_FOR_METHOD: called while no instance is created",
                           "misuse: INFO_FOR_INP: called while no instance is created",
                           "misuse: TVAL: called while no instance is created"}));
}

TEST_F(HostTest, SaysWhyThereIsNoInstance) {
  creating = [](def_unittype* parent) {
    error_msg(is_not_unit(parent) != 0 ? 2 : 30, "test", 1, 0);
    return static_cast<def_unittype*>(nullptr);
  };
  try {
    host_.create(kIcon, {});
    ADD_FAILURE() << "no error";
  } catch (const CreationError& error) {
    EXPECT_STREQ(error.what(),
                 "icon test: no instance was created; test: error 30: the unit could not be "
                 "created");
  }
  EXPECT_EQ(host_.create_root(kIcon, {}, nullptr), nullptr);
  EXPECT_EQ(said(), (Texts{"error: test: error 30: the unit could not be created",
                           "error: test: error 2: the parent is no unit"}));
}

TEST_F(HostTest, RefusesARootThatIsNoneOfItsUnits) {
  def_unittype foreign{};
  creating = [&](def_unittype*) { return &foreign; };
  EXPECT_THROW(host_.create(kIcon, {}), CreationError);
  EXPECT_EQ(said(), Texts{"misuse: create: it returned what is no unit of this host"});
}

TEST_F(HostTest, RefusesARootThatIsNoChildOfTheParent) {
  creating = [](def_unittype* parent) { return parent; };
  EXPECT_THROW(host_.create(kIcon, {}), CreationError);
  EXPECT_EQ(said(),
            Texts{"misuse: create: it returned a unit that is no child of the parent it was "
                  "given"});
}

TEST_F(HostTest, ForgetsAnInstanceWhosePluginThrew) {
  creating = [](def_unittype*) -> def_unittype* { throw std::runtime_error("no"); };
  EXPECT_THROW(host_.create(kIcon, {"text"}), CreationError);
  EXPECT_THROW(host_.create_root(kIcon, {"text"}, nullptr), std::runtime_error);
  EXPECT_EQ(TVAL(0), nullptr);
}

TEST_F(HostTest, SaysWhatACreateThrew) {
  const auto error = [this](std::function<def_unittype*(def_unittype*)> create) -> std::string {
    creating = std::move(create);
    try {
      host_.create(kIcon, {});
    } catch (const CreationError& thrown) {
      return thrown.what();
    }
    return "no error";
  };
  EXPECT_EQ(error([](def_unittype*) -> def_unittype* { throw std::runtime_error("no"); }),
            "icon test: create threw: no");
  EXPECT_EQ(error([](def_unittype*) -> def_unittype* {
              error_msg(30, "test", 1, 0);
              throw 7;
            }),
            "icon test: create threw; test: error 30: the unit could not be created");
}

TEST_F(HostTest, MakesNoMoreUnitsThanItIsTold) {
  host_.limit_units(2);
  instance([](def_unittype* root) {
    EXPECT_NE(primitive_unit(TAG_END, root), nullptr);
    EXPECT_EQ(primitive_unit(TAG_END, root), nullptr);
  });
  EXPECT_EQ(said(), Texts{});
}

// Leaves the process 50 megabytes more than it has.
class LittleMemory {
 public:
  LittleMemory() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    getrlimit(RLIMIT_AS, &before_);
    const rlimit little = {pages * static_cast<std::size_t>(getpagesize()) + 50'000'000,
                           before_.rlim_max};
    if (pages == 0 || setrlimit(RLIMIT_AS, &little) != 0) throw std::runtime_error("no limit");
  }
  ~LittleMemory() { setrlimit(RLIMIT_AS, &before_); }
  LittleMemory(const LittleMemory&) = delete;
  LittleMemory& operator=(const LittleMemory&) = delete;

 private:
  rlimit before_{};
};

TEST_F(HostTest, MakesNoUnitThatThereIsNoMemoryFor) {
#ifdef SDPSOL_SANITIZE
  GTEST_SKIP() << "the address sanitizer needs more memory than this test leaves";
#endif
  const LittleMemory little;
  std::size_t made = 0;
  const Instance built = instance([&](def_unittype* root) {
    // Each has 12 megabytes.
    while (primitive_unit(TAG_INP, TAG_FLOAT, 1'000'000, TAG_END, root) != nullptr) ++made;
  });
  EXPECT_GT(made, 0U);
  EXPECT_LT(made, 100U);
  EXPECT_EQ(built.root().children().size(), made);
  EXPECT_EQ(said(), Texts{"misuse: primitive_unit: there is no memory for it"});
}

TEST_F(HostTest, KeepsWhatAPluginHasWhereThereIsNoMemory) {
#ifdef SDPSOL_SANITIZE
  GTEST_SKIP() << "the address sanitizer needs more memory than this test leaves";
#endif
  std::string long_text;
  long_text.resize(100'000'000, 'x');
  const Instance built = instance([&](def_unittype* root) {
    def_unittype* const method = primitive_unit(TAG_END, root);
    zel_name_unit("Method", method);
    zel_set_method(method, count_firing);
    kem_iconform_for_method("Method", "help", 0, 0);
    const LittleMemory little;
    zel_name_unit(long_text.c_str(), method);
    kem_iconform_for_method("Method", long_text.c_str(), 0, 0);
    label(root, long_text.c_str());
    error_msg(30, long_text.c_str(), 1, 0);
  });
  ASSERT_NE(built.find("Method"), nullptr);
  EXPECT_EQ(built.find("Method")->text.help, "help");
  EXPECT_EQ(said(), (Texts{"misuse: zel_name_unit: there is no memory for it",
                           "misuse: kem_iconform_for_method: there is no memory for it",
                           "misuse: label: there is no memory for it",
                           "misuse: error_msg: there is no memory for it"}));
}

TEST_F(HostTest, KeepsAHundredReportsAndCountsTheOthers) {
  for (int i = 0; i < 100; ++i) TVAL(i);
  EXPECT_EQ(said().size(), 100U);
  for (int i = 0; i < 100'000; ++i) error_msg(i, "test", 1, 0);
  const std::vector<Report> reports = host_.take_reports();
  ASSERT_EQ(reports.size(), 101U);
  EXPECT_EQ(reports[99].code, 99);
  EXPECT_EQ(reports[100].text, "the interface, or reports an error, 99900 times more");
  EXPECT_EQ(said(), Texts{});
}

TEST_F(HostTest, TellsAnObserverOfEveryOperation) {
  std::vector<std::string> seen;
  host_.observe([&seen](std::string_view operation, const Unit* unit) {
    seen.push_back(std::string(operation) + (unit == nullptr ? "" : " " + unit->label));
  });
  instance([](def_unittype* root) {
    label(root, "early");
    TVAL(0);
  });
  EXPECT_EQ(seen, (Texts{"primitive_unit ", "zel_indicate_export_of_methods ", "return_unit ",
                         "label ", "TVAL", "label early"}));
}

TEST(WithoutHost, OperationsDoNothing) {
  def_unittype unit{};
  float array[1] = {};
  EXPECT_EQ(primitive_unit(TAG_END, &unit), nullptr);
  EXPECT_NE(is_not_unit(&unit), 0);
  EXPECT_EQ(error_msg(2, "x", 1, 0), 0);
  EXPECT_EQ(TVAL(0), nullptr);
  EXPECT_EQ(zel_dim_of_dyn_inp(&unit, 0, 0), 0);
  EXPECT_NE(zel_reassign(&unit, 0, 0, 1, array), 0);
  zel_name_unit("x", &unit);
  zel_indicate_export_of_methods(&unit);
  return_unit(&unit);
  label(&unit, "x");
  kem_iconform_for_method("x", "x", 0, 0);
  SET_INFO_FOR_METHOD("x");
  INFO_FOR_INP(0, "x");
  INFO_FOR_OUT(0, "x");
}

}  // namespace
}  // namespace zelhost
