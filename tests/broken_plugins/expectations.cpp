#include "tests/broken_plugins/expectations.h"

namespace broken_plugins {
namespace {

const std::string kRecords = "its records are exported and lead to each other: ";
const std::string kDialog = "every field of the dialog has a label of its own: ";
const std::string kCreated = "an instance is created: ";
const std::string kOperations = "creating an instance misuses no operation: ";
const std::string kParent = "a parent that is no unit is refused with error 2: ";
const std::string kNoRoom = "without room for a unit, error 30 is reported: ";
const std::string kOrder = "return_unit comes before the root's children, label comes last: ";
const std::string kTree = "the tree is made of named groups and methods: ";
const std::string kUser = "each instance has a user pointer, which all its units share: ";
const std::string kTexts = "every method and every port has its text: ";
const std::string kBackwards = "the methods work from last to first, each twice: ";
const std::string kHundred = "a hundred instances work side by side: ";
const std::string kSegfault = "killed by signal 11 (Segmentation fault)";

Expectation loading(const std::string& plugin, const std::string& why) {
  return {plugin, {"the library loads: " + why}, {"all other checks: the library does not load"}};
}

Expectation records(const std::string& plugin, const std::string& why) {
  return {plugin, {kRecords + why}, {"all other checks: the records are not sound"}};
}

Expectation creation(const std::string& plugin, const std::string& why) {
  return {plugin, {kCreated + why}, {"all checks of instances: there is no instance"}};
}

Expectation one(const std::string& plugin, const std::string& failed) {
  return {plugin, {failed}, {}};
}

Lines not_working(const std::string& check) {
  return {"the methods work one after the other: " + check + " did not pass",
          "the methods work from last to first, each twice: " + check + " did not pass",
          "a hundred instances work side by side: " + check + " did not pass",
          "the process ends well after the methods have worked: " + check + " did not pass"};
}

// A method that fails whatever its inputs are, or as often as not.
Expectation scaling(const std::string& plugin, const std::string& why,
                    const std::string& except = "") {
  Lines failed;
  for (const char* const inputs :
       {"inputs never set", "zeros", "ordinary inputs", "long arrays", "huge numbers",
        "negative numbers", "NaN inputs", "infinite numbers"})
    if (inputs != except) failed.push_back("Arrays:Scale with " + std::string(inputs) + ": " + why);
  return {plugin, failed, not_working("Arrays:Scale with ordinary inputs")};
}

Lines counting(const std::string& why) {
  Lines failed;
  for (const char* const inputs : {"inputs never set", "zeros", "ordinary inputs", "long arrays",
                                   "huge numbers", "negative numbers"})
    failed.push_back("Arrays:Count with " + std::string(inputs) + ": " + why);
  return failed;
}

std::string missing(const std::string& record) {
  return "there is no record " + record +
         " (a plug-in's records end in the name of its file, and are exported)";
}

std::string with_both_parents(const std::string& why, const std::string& other_why) {
  return kParent + "with a parent that is null: " + why +
         "; with a parent that is null: error 2 is not reported (error_msg)" +
         "; with a parent that is none of the host's units: " + other_why +
         "; with a parent that is none of the host's units: error 2 is not reported (error_msg)";
}

// Of thirty complaints, the last one and as many before it as make twenty.
std::string for_many_ports() {
  std::string all;
  for (int port = 2; port < 21; ++port)
    all +=
        "the method Arrays:Scale has no output " + std::to_string(port) + ", which is described; ";
  return all + "10 more; the method Arrays:Scale has no output 31, which is described";
}

const std::string kOwned = "zel_reassign: Arrays:Scale, output 0: the array is the host's already";
const std::string kNoCount = kTexts + "there is no method Arrays:Count, which is described";
const std::string kNoScale = kTexts + "there is no method Arrays:Scale, which is described";

}  // namespace

const std::vector<Expectation>& expectations() {
  static const std::vector<Expectation> all = {
      loading("undefined_symbol", "undefined symbol: there_is_no_such_function"),
      loading("crashes_at_loading", kSegfault),
      one("crashes_at_the_end",
          "the process ends well after the methods have worked: at the end of the process: " +
              kSegfault),

      records("no_version", missing("Kem_V_of_no_version")),
      records("no_folder", missing("gsFolder_no_folder")),
      records("no_icon_array", missing("gasIconsOfFolder_no_icon_array")),
      records("no_icon_definition", missing("ICONDEF_no_icon_definition")),
      records("small_record", "the record Kem_V_of_small_record has 8 bytes instead of 16"),
      records("folder_elsewhere",
              "gsFolder_folder_elsewhere does not lead to gasIconsOfFolder_folder_elsewhere"),
      records("icons_without_end",
              "gasIconsOfFolder_icons_without_end has no end (an entry of empty texts)"),
      records("no_icons", "gasIconsOfFolder_no_icons has no icon"),
      records("icon_without_definition",
              "gasIconsOfFolder_icon_without_definition has an icon without a definition"),
      records("icon_of_another_folder",
              "gasIconsOfFolder_icon_of_another_folder has an icon of another folder"),
      records("definition_elsewhere",
              "gasIconsOfFolder_definition_elsewhere does not lead to "
              "ICONDEF_definition_elsewhere"),
      records("null_create", "ICONDEF_null_create has a null where a function belongs"),
      records("null_dialog", "ICONDEF_null_dialog has a null where a text belongs"),
      records("wrong_icon_name", "ICONDEF_wrong_icon_name has another name than its entry"),
      records("dialog_without_end",
              "ICONDEF_dialog_without_end: dialog text, character 20: \"%{\" has no \"%}\""),

      one("field_without_label", kDialog + "field 1 has no label"),
      one("duplicate_labels", kDialog + "two fields are labelled \"text\""),
      one("second_returns_0", "the icon's second function returns 1: it returns 0"),
      {"other_icon_creates_nothing",
       {"icon other: " + kCreated + "create returned null"},
       {"icon other: all checks of instances: there is no instance"}},

      creation("create_returns_null", "create returned null"),
      creation("create_reports_an_error",
               "create returned null; create_reports_an_error: error 30: the unit could not be "
               "created"),
      creation("create_returns_a_group",
               "create returned a unit without a name below the root, which is not a child of the "
               "parent that it was given"),
      creation("create_returns_a_stranger", "create returned what is no unit of this host"),
      creation("create_throws", "threw: no numbers today"),
      creation("create_crashes", kSegfault),
      creation("create_forks", "create forked and came back in both processes"),
      one("create_changes_folder",
          "creating an instance leaves the process as it was: it changed the working folder"),
      one("accepts_any_parent",
          with_both_parents("primitive_unit: the unit is null",
                            "primitive_unit: the unit is none of this host's")),
      one("builds_below_another_parent",
          with_both_parents("create returned a unit", "create returned a unit")),
      one("leaves_a_unit_behind",
          kParent + "with a parent that is null: create returned null, but has built units"),
      one("silent_about_parent",
          kParent + "with a parent that is null: error 2 is not reported (error_msg); with a "
                    "parent that is none of the host's units: error 2 is not reported (error_msg)"),
      one("silent_without_room", kNoRoom + "error 30 is not reported (error_msg)"),
      one("crashes_with_little_room",
          "too little room for all units does no harm: with room for 1 of 5 units: " + kSegfault),
      one("reads_past_dialog", kOperations + "TVAL: the dialog has no field 2"),
      one("error_in_spite_of_success",
          kOperations + "an error is reported though there is an instance: "
                        "error_in_spite_of_success: error 30: the unit could not be created"),
      one("no_return_unit", kOrder + "return_unit is not called"),
      {"late_return_unit",
       {kOperations + "return_unit: the root has children already",
        kOrder + "return_unit is called after the root was given children"},
       {}},
      {"return_unit_twice",
       {kOperations + "return_unit: called a second time",
        kOrder + "return_unit is called 2 times"},
       {}},
      one("return_unit_of_group", kOrder + "return_unit is called on Arrays instead of the root"),
      one("no_label", kOrder + "label is not called"),
      one("early_label", kOrder + "zel_name_unit is called after label"),

      {"unnamed_unit", {kTree + "there is a unit without a name below Arrays", kNoCount}, {}},
      {"duplicate_name",
       {kOperations + "zel_name_unit: a sibling is named \"Scale\" already",
        kTree + "there is a unit without a name below Arrays", kNoCount},
       {}},
      {"name_of_another_path",
       {kTree + "two units are named Arrays:Count",
        kTexts + "the method Arrays:Count has no help text; the method Arrays:Count has no text "
                 "for its input 0; the method Arrays:Count has no text for its output 0; there is "
                 "no method Length, which is described"},
       {}},
      one("names_the_parent", kOperations + "zel_name_unit: the unit is the host's own"),
      one("group_not_exporting",
          kTree + "Arrays does not export its methods (zel_indicate_export_of_methods)"),
      one("root_not_exporting",
          kTree + "the root does not export its methods (zel_indicate_export_of_methods)"),
      one("root_with_ports", kTree + "the root has ports but no method function"),
      one("root_with_method", kTree + "the root has a method function"),
      {"group_with_method",
       {kTree + "the method Arrays has units below it",
        kTexts + "the method Arrays has no help text", "Arrays, which has no inputs: " + kSegfault},
       not_working("Arrays, which has no inputs")},
      {"method_without_function",
       {kTree + "Arrays:Scale has ports but no method function", kNoScale},
       {}},
      {"method_below_method",
       {kTree + "the method Arrays:Scale has units below it",
        kTexts + "the method Arrays:Scale:Count has no help text; the method Arrays:Scale:Count "
                 "has no text for its input 0; the method Arrays:Scale:Count has no text for its "
                 "output 0; there is no method Arrays:Count, which is described"},
       {}},
      one("no_methods", kTree + "there is no method"),
      {"wrong_tag", {kOperations + "primitive_unit: no port kind: -99999995", kNoCount}, {}},
      {"wrong_count", {kOperations + "primitive_unit: TAG_FLOAT with count 0", kNoScale}, {}},
      {"wrong_element_type",
       {kOperations +
            "primitive_unit: TAG_DYN with an element type that is neither \"F\" nor \"I\"",
        kNoCount},
       {}},

      {"no_user_pointer",
       {kUser + "the root has no user pointer; Arrays has no user pointer; Arrays:Scale has no "
                "user pointer; Arrays:Count has no user pointer; Length has no user pointer",
        kHundred + "instance 2: it has the user pointer of instance 1"},
       {}},
      one("no_user_pointer_in_method", kUser + "Arrays:Count has no user pointer"),
      {"shared_user_pointer",
       {kUser + "two instances have the same user pointer",
        kHundred + "instance 2: it has the user pointer of instance 1"},
       {}},
      one("other_user_pointer_in_group", kUser + "Arrays has another user pointer than the root"),

      one("no_help", kTexts + "the method Arrays:Scale has no help text"),
      one("blank_help", kTexts + "the method Arrays:Scale has no help text"),
      one("no_port_text", kTexts + "the method Arrays:Scale has no text for its output 1"),
      one("help_for_no_method", kTexts + "there is no method Arrays:Sort, which is described"),
      one("text_for_no_port",
          kTexts + "the method Arrays:Scale has no output 2, which is described"),
      one("texts_for_many_ports", kTexts + for_many_ports()),
      one("no_texts",
          kTexts + "the method Arrays:Scale has no help text; the method Arrays:Scale has no text "
                   "for its input 0; the method Arrays:Scale has no text for its input 1; the "
                   "method Arrays:Scale has no text for its output 0; the method Arrays:Scale has "
                   "no text for its output 1; the method Arrays:Count has no help text; the method "
                   "Arrays:Count has no text for its input 0; the method Arrays:Count has no text "
                   "for its output 0; the method Length has no help text; the method Length has no "
                   "text for its input 0; the method Length has no text for its output 0"),
      one("text_before_selection", kOperations + "INFO_FOR_INP: no method is selected"),
      one("described_once",
          "a second instance is described as the first: the second time Arrays:Count is described "
          "otherwise, or not at all; the second time Arrays:Scale is described otherwise, or not "
          "at all; the second time Length is described otherwise, or not at all"),
      one("described_the_second_time",
          "a second instance is described as the first: Arrays:Sort is described only the second "
          "time"),

      one("crashes_on_nan", "Arrays:Scale with NaN inputs: " + kSegfault),
      one("crashes_on_no_array", "Arrays:Scale with inputs never set: " + kSegfault),
      one("crashes_on_no_text", "Length with inputs never set: " + kSegfault),
      one("crashes_on_empty_text", "Length with an empty text: " + kSegfault),
      one("crashes_on_long_text", "Length with a long text: " + kSegfault),
      {"crashes_on_huge_number",
       {"Arrays:Scale with huge numbers: " + kSegfault,
        "Arrays:Scale with infinite numbers: " + kSegfault},
       {}},
      {"hangs_on_negative_number",
       {"Arrays:Scale with negative numbers: did not end within 2 s"},
       {"Arrays:Scale with NaN inputs: Arrays:Scale with negative numbers did not end",
        "Arrays:Scale with infinite numbers: Arrays:Scale with negative numbers did not end"}},
      scaling("exits", "the process ended with status 3"),
      scaling("throws", "threw: the numbers are no good"),
      scaling("throws_a_number", "threw what is no std::exception"),
      scaling("returns_1", "returned 1"),
      scaling("static_array",
              "output 0: the array is not from new[] but a variable of static_array.so; when the "
              "host frees the instance: killed by signal 6 (Aborted)"),
      scaling("short_array", "output 0: the array has no room for 1000 elements, but for 6"),
      scaling("inner_array",
              "output 0: the array is not from new[]; when the host frees the instance: killed by "
              "signal 6 (Aborted)"),
      scaling("same_array_twice", kOwned),
      // Where there is no array at the input, none is handed over.
      scaling("input_as_output", kOwned, "inputs never set"),
      scaling("negative_length", "zel_reassign: Arrays:Scale, output 0: the length is -1"),
      scaling("no_such_output", "zel_reassign: Arrays:Scale, output 2: there is no such port"),
      scaling("length_of_no_array",
              "zel_dim_of_dyn_inp: Arrays:Scale, input 0: the port is no array but 1 float"),
      scaling("changes_its_inputs", "it changed its inputs"),
      scaling("closes_output", "it closed standard output; it closed standard error"),
      scaling("replaces_input", "it replaced standard input"),
      scaling("changes_folder", "it changed the working folder"),
      scaling("changes_locale", "it changed the locale"),
      scaling("forks", "it forked and came back in both processes"),
      scaling("calls_from_a_thread",
              "zel_dim_of_dyn_inp: called from another thread than the host's"),
      scaling("grows", "primitive_unit: called while no instance is created"),
      {"keeps_dialog_text", counting("returned 1"),
       not_working("Arrays:Count with ordinary inputs")},
      scaling("crashes_the_second_time", "the second time: " + kSegfault),
      {"crashes_before_another_method", counting(kSegfault),
       not_working("Arrays:Count with ordinary inputs")},
      one("crashes_after_another_method", kBackwards + "Arrays:Scale: " + kSegfault),
      one("only_99_instances", kHundred + "instance 100: create returned null"),
      one("only_99_work",
          kHundred + "instance 1, Length: returned 1; instance 100, Length: returned 1"),
  };
  return all;
}

}  // namespace broken_plugins
