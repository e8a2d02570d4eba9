// Dialog texts, and what is left of help texts.
#include "host/dialog.h"

#include <gtest/gtest.h>

#include "host/text.h"
#include "tests/support/message_of.h"

namespace zelhost {
namespace {

using Fields = std::vector<DialogField>;

std::string error_of(std::string_view text) {
  return test_support::message_of<DialogError>([&] { read_dialog(text); });
}

TEST(ReadDialog, FindsFieldsWithTheirLabels) {
  EXPECT_EQ(read_dialog(" unit of nothing %n sdpsol command : %{sdpsol%}%32t %n file: %{a b%}%8t "
                        "%n change the names %n %[%0:1:0:10d %l`Cancel%d%l`Ok%]%H "),
            (Fields{{"sdpsol command", "sdpsol"}, {"file", "a b"}}));
}

TEST(ReadDialog, FindsNothingInATextWithoutFields) {
  EXPECT_EQ(read_dialog(""), Fields{});
  EXPECT_EQ(read_dialog(" %[%0:1:0:10d %l`Cancel%d%l`Ok%]%H "), Fields{});
}

TEST(ReadDialog, TakesFieldsWithoutLabelAndWithoutPreset) {
  EXPECT_EQ(read_dialog("%{%}a:%{b%}"), (Fields{{"", ""}, {"a", "b"}}));
}

TEST(ReadDialog, TakesAPresetAsItStands) {
  EXPECT_EQ(read_dialog("x%{ 50% of } %n%}"), (Fields{{"x", " 50% of } %n"}}));
}

TEST(ReadDialog, SkipsCodesItDoesNotKnow) {
  EXPECT_EQ(read_dialog("%q%12x a%{b%}%3"), (Fields{{"a", "b"}}));
}

TEST(ReadDialog, SaysWhatDoesNotEnd) {
  EXPECT_EQ(error_of("ab %{c%"), "dialog text, character 3: \"%{\" has no \"%}\"");
  EXPECT_EQ(error_of("%[ %n"), "dialog text, character 0: \"%[\" has no \"%]\"");
  EXPECT_EQ(error_of("a%"), "dialog text: it ends with a \"%\"");
}

TEST(Readable, MakesLinesOfAHelpText) {
  EXPECT_EQ(readable(" set it %n  for use later%n"), "set it\nfor use later");
  EXPECT_EQ(readable("%n%n"), "");
  EXPECT_EQ(readable("plain"), "plain");
}

}  // namespace
}  // namespace zelhost
