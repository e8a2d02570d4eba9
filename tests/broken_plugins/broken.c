/* A small plug-in that does what a host expects, and its failures: compiled with
 * NAME defined as one of the names in failures.h, it does everything right but the one
 * thing that the name says. The folder and the icon are called NAME too, and so is
 * the file that it becomes. In C, as plug-ins may be.
 *
 * Its instances have a group Arrays with the methods Scale and Count, and a method
 * Length beside it.
 */
#include <fcntl.h>
#include <locale.h>
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "tests/broken_plugins/failures.h"
#include "tests/broken_plugins/from_cpp.h"
#include "zel/zel.h"

#define FAILURE ((int)NAME)

#define PASTE_EXPANDED(a, b) a##b
#define PASTE(a, b) PASTE_EXPANDED(a, b)
#define TEXT_OF_EXPANDED(a) #a
#define TEXT_OF(a) TEXT_OF_EXPANDED(a)
#define NAME_TEXT TEXT_OF(NAME)

/* What each instance knows. Lives as long as the process. */
struct instance {
  int scaled;
  int counted;
};

static int instances = 0;

static const char* digits = NULL;

static void crash(void) {
  raise(SIGSEGV);
}

/* Methods */

static struct instance* instance_of(const def_unittype* unit) {
  static struct instance nobody;
  return zel_user(unit) == NULL ? &nobody : zel_user(unit);
}

static void* ask_for_length(void* unit) {
  zel_dim_of_dyn_inp(unit, 1, 0);
  return NULL;
}

static void ask_from_a_thread(def_unittype* unit) {
  pthread_t thread;
  if (pthread_create(&thread, NULL, ask_for_length, unit) == 0) pthread_join(thread, NULL);
}

/* Does to the process what is not a plug-in's to do. */
static void meddle(void) {
  int ignored = 0;
  switch (FAILURE) {
    case closes_output:
      close(STDOUT_FILENO);
      close(STDERR_FILENO);
      break;
    case replaces_input:
      close(STDIN_FILENO);
      ignored = open("/dev/full", O_RDONLY);
      break;
    case changes_folder:
      ignored = chdir("/");
      break;
    case changes_locale:
      setlocale(LC_ALL, "C.UTF-8");
      break;
    case forks:
      ignored = fork();
      break;
    default:
      break;
  }
  (void)ignored;
}

static void fail_as_scale(def_unittype* unit) {
  static float numbers[10];
  const float factor = zel_float_inp(unit, 0, 0);
  switch (FAILURE) {
    case crashes_on_nan:
      if (factor != factor) crash();
      break;
    case crashes_on_huge_number:
      if (factor > 1e9F) crash();
      break;
    case hangs_on_negative_number:
      while (factor < 0) pause();
      break;
    case crashes_on_no_array:
      if (zel_floats_inp(unit, 1) == NULL) crash();
      break;
    case exits:
      puts("Scale has enough");
      exit(3);
    case throws:
      throw_error("the numbers are no good");
      break;
    case throws_a_number:
      throw_number();
      break;
    case static_array:
      zel_reassign(unit, 0, 0, 10, numbers);
      break;
    case short_array:
      zel_reassign(unit, 0, 0, 1000, new_floats(6));
      break;
    case inner_array:
      zel_reassign(unit, 0, 0, 9, new_floats(10) + 1);
      break;
    case input_as_output:
      zel_reassign(unit, 0, 0, zel_dim_of_dyn_inp(unit, 1, 0), (void*)zel_floats_inp(unit, 1));
      break;
    case negative_length:
      zel_reassign(unit, 0, 0, -1, NULL);
      break;
    case no_such_output:
      zel_reassign(unit, 2, 0, 0, NULL);
      break;
    case length_of_no_array:
      zel_dim_of_dyn_inp(unit, 0, 0);
      break;
    case calls_from_a_thread:
      ask_from_a_thread(unit);
      break;
    case grows:
      primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_END, zel_parent(unit));
      break;
    case changes_its_inputs:
      *(float*)unit->inputs[0].elements[0].value = 7.0F;
      break;
    case crashes_the_second_time:
      if (instance_of(unit)->scaled > 0) crash();
      break;
    case crashes_after_another_method:
      if (instance_of(unit)->counted > 0) crash();
      break;
    default:
      meddle();
      break;
  }
}

static int scale(def_unittype* unit) {
  fail_as_scale(unit);
  if (FAILURE == static_array || FAILURE == short_array || FAILURE == inner_array ||
      FAILURE == input_as_output)
    return 0;
  const float factor = zel_float_inp(unit, 0, 0);
  const float* const numbers = zel_floats_inp(unit, 1);
  const int length = zel_dim_of_dyn_inp(unit, 1, 0);
  float* const scaled = new_floats(length);
  float sum = 0;
  for (int i = 0; i < length; ++i) {
    scaled[i] = factor * numbers[i];
    sum += scaled[i];
  }
  zel_reassign(unit, 0, 0, length, scaled);
  if (FAILURE == same_array_twice) zel_reassign(unit, 0, 0, length, scaled);
  zel_set_float_out(unit, 1, 0, sum);
  ++instance_of(unit)->scaled;
  return FAILURE == returns_1 ? 1 : 0;
}

/* How often each of the numbers 0 to 9 occurs. */
static int count(def_unittype* unit) {
  enum { kNumbers = 10 };
  if (FAILURE == keeps_dialog_text && atoi(digits) != kNumbers) return 1;
  if (FAILURE == crashes_before_another_method && instance_of(unit)->scaled == 0) crash();
  const int32_t* const numbers = zel_integers_inp(unit, 0);
  const int length = zel_dim_of_dyn_inp(unit, 0, 0);
  int32_t* const counts = new_integers(kNumbers);
  for (int i = 0; i < length; ++i)
    if (numbers[i] >= 0 && numbers[i] < kNumbers) ++counts[numbers[i]];
  zel_reassign(unit, 0, 0, kNumbers, counts);
  ++instance_of(unit)->counted;
  return 0;
}

static int length(def_unittype* unit) {
  const char* const text = zel_text_inp(unit, 0);
  if (FAILURE == crashes_on_no_text && text == NULL) crash();
  const size_t size = text == NULL ? 0 : strlen(text);
  if (FAILURE == crashes_on_empty_text && text != NULL && size == 0) crash();
  if (FAILURE == crashes_on_long_text && size > 1000) crash();
  if (FAILURE == only_99_work && instances >= 100) return 1;
  zel_set_float_out(unit, 0, 0, (float)size);
  return 0;
}

/* Texts */

static void describe_scale(void) {
  if (FAILURE == text_before_selection) INFO_FOR_INP(0, "factor");
  if (FAILURE != no_help) {
    const char* const help = FAILURE == blank_help ? " %n %n" : " multiplies numbers %n";
    kem_iconform_for_method("Arrays:Scale", help, 0, 0);
  }
  SET_INFO_FOR_METHOD("Arrays:Scale");
  INFO_FOR_INP(0, "factor");
  INFO_FOR_INP(1, "numbers");
  INFO_FOR_OUT(0, "scaled numbers");
  if (FAILURE != no_port_text) INFO_FOR_OUT(1, "their sum");
  if (FAILURE == text_for_no_port) INFO_FOR_OUT(2, "their product");
  for (int port = 2; FAILURE == texts_for_many_ports && port < 32; ++port)
    INFO_FOR_OUT(port, "nothing");
}

static void describe_methods(void) {
  if (FAILURE == no_methods || FAILURE == no_texts || (FAILURE == described_once && instances > 1))
    return;
  describe_scale();
  kem_iconform_for_method("Arrays:Count", " counts digits%n", 0, 0);
  SET_INFO_FOR_METHOD("Arrays:Count");
  INFO_FOR_INP(0, "numbers");
  INFO_FOR_OUT(0, "how often each digit occurs");
  kem_iconform_for_method("Length", " the length of a text%n", 0, 0);
  SET_INFO_FOR_METHOD("Length");
  INFO_FOR_INP(0, "text");
  INFO_FOR_OUT(0, "its length in bytes");
  if (FAILURE == help_for_no_method || (FAILURE == described_the_second_time && instances > 1))
    kem_iconform_for_method("Arrays:Sort", "sorts", 0, 0);
}

/* The tree. A unit that the host did not make is left out. */

static def_unittype* add_group(const char* name, def_unittype* root) {
  def_unittype* const group = primitive_unit(TAG_END, root);
  if (FAILURE == crashes_with_little_room && group == NULL) crash();
  if (group == NULL) return NULL;
  zel_name_unit(name, group);
  zel_set_user(group, zel_user(root));
  if (FAILURE == other_user_pointer_in_group) zel_set_user(group, group);
  if (FAILURE == group_with_method) zel_set_method(group, count);
  if (FAILURE != group_not_exporting) zel_indicate_export_of_methods(group);
  return group;
}

static void make_method(const char* name, zel_method* method, void* user, def_unittype* unit) {
  if (unit == NULL) return;
  if (name != NULL) zel_name_unit(name, unit);
  zel_set_user(unit, user);
  zel_set_method(unit, method);
}

static void add_arrays(def_unittype* root) {
  void* const user = zel_user(root);
  def_unittype* const arrays = add_group("Arrays", root);
  if (FAILURE == return_unit_of_group) return_unit(arrays);
  if (arrays == NULL || FAILURE == no_methods) return;

  def_unittype* const scaling =
      primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_INP, TAG_DYN, "F", TAG_OUT, TAG_DYN, "F", TAG_OUT,
                     TAG_FLOAT, FAILURE == wrong_count ? 0 : 1, TAG_END, arrays);
  make_method("Scale", FAILURE == method_without_function ? NULL : scale, user, scaling);

  const int kind = FAILURE == wrong_tag ? TAG_DYN + 1 : TAG_DYN;
  const char* const element = FAILURE == wrong_element_type ? "D" : "I";
  def_unittype* const counting =
      primitive_unit(TAG_INP, kind, element, TAG_OUT, TAG_DYN, "I", TAG_END,
                     FAILURE == method_below_method ? scaling : arrays);
  const char* const name = FAILURE == unnamed_unit     ? NULL
                           : FAILURE == duplicate_name ? "Scale"
                                                       : "Count";
  make_method(name, count, FAILURE == no_user_pointer_in_method ? NULL : user, counting);
}

static struct instance* new_instance(void) {
  static struct instance only;
  if (FAILURE == no_user_pointer) return NULL;
  return FAILURE == shared_user_pointer ? &only : calloc(1, sizeof(struct instance));
}

static void discard(struct instance* instance) {
  if (FAILURE != shared_user_pointer) free(instance);
}

static void build_below(def_unittype* root) {
  if (FAILURE == early_label) label(root, NAME_TEXT);
  if (FAILURE != root_not_exporting) zel_indicate_export_of_methods(root);
  if (FAILURE != no_return_unit && FAILURE != late_return_unit && FAILURE != return_unit_of_group)
    return_unit(root);
  if (FAILURE == return_unit_twice) return_unit(root);
  add_arrays(root);
  if (FAILURE != no_methods)
    make_method(FAILURE == name_of_another_path ? "Arrays:Count" : "Length", length, zel_user(root),
                primitive_unit(TAG_INP, TAG_STRING, 1, TAG_OUT, TAG_FLOAT, 1, TAG_END, root));
  if (FAILURE == late_return_unit) return_unit(root);
  if (FAILURE != no_label && FAILURE != early_label) label(root, NAME_TEXT);
}

static def_unittype* build(def_unittype* parent) {
  static def_unittype stranger;
  struct instance* const instance = new_instance();
  if (FAILURE == create_returns_a_stranger) return &stranger;
  if (FAILURE != accepts_any_parent && is_not_unit(parent)) {
    if (FAILURE != silent_about_parent) error_msg(2, NAME_TEXT, 1, 0);
    discard(instance);
    return NULL;
  }
  def_unittype* const root = FAILURE == root_with_ports
                                 ? primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_END, parent)
                                 : primitive_unit(TAG_END, parent);
  if (root == NULL) {
    if (FAILURE != silent_without_room) error_msg(30, NAME_TEXT, 1, 0);
    discard(instance);
    return NULL;
  }
  if (FAILURE == names_the_parent) zel_name_unit("numbers", parent);
  zel_set_user(root, instance);
  if (FAILURE == root_with_method) zel_set_method(root, count);
  build_below(root);
  return FAILURE == create_returns_a_group ? primitive_unit(TAG_END, root) : root;
}

static def_unittype* create(int unused, int also_unused, const ZelIconDef_* icon,
                            def_unittype* parent) {
  static def_unittype* last_parent = NULL;
  (void)unused, (void)also_unused, (void)icon;
  ++instances;
  describe_methods();
  digits = TVAL(1);
  TVAL(0);
  switch (FAILURE) {
    case create_crashes:
      crash();
      break;
    case create_forks:
      if (fork() == 0) usleep(50000);
      break;
    case create_changes_folder:
      if (chdir("/") != 0) crash();
      break;
    case create_throws:
      throw_error("no numbers today");
      break;
    case create_reports_an_error:
      error_msg(30, NAME_TEXT, 1, 0);
      return NULL;
    case only_99_instances:
      if (instances < 100) break;
      return NULL;
    case create_returns_null:
      return NULL;
    case reads_past_dialog:
      TVAL(2);
      break;
    case builds_below_another_parent:
      if (last_parent != NULL && is_not_unit(parent)) parent = last_parent;
      break;
    case leaves_a_unit_behind:
      if (last_parent != NULL && is_not_unit(parent)) primitive_unit(TAG_END, last_parent);
      break;
    default:
      break;
  }
  last_parent = parent;
  def_unittype* const root = build(parent);
  if (FAILURE == error_in_spite_of_success && root != NULL) error_msg(30, NAME_TEXT, 1, 0);
  return root;
}

static int second(int unused, int also_unused, const ZelIconDef_* icon, def_unittype* parent) {
  (void)unused, (void)also_unused, (void)icon, (void)parent;
  return FAILURE == second_returns_0 ? 0 : 1;
}

/* Records. What is not exported here is not to be found. */

#if !defined(BREAK_no_icon_definition)
ZEL_EXPORT
#endif
extern const ZelIconDef_ PASTE(ICONDEF_, NAME);
#if !defined(BREAK_no_icon_array)
ZEL_EXPORT
#endif
extern const zel_icon_entry PASTE(gasIconsOfFolder_, NAME)[];
#if !defined(BREAK_no_folder)
ZEL_EXPORT
#endif
extern const zel_folder PASTE(gsFolder_, NAME);
#if !defined(BREAK_no_version)
ZEL_EXPORT
#endif
#if defined(BREAK_small_record)
extern const char* const PASTE(Kem_V_of_, NAME);
#else
extern const zel_version PASTE(Kem_V_of_, NAME);
#endif

#define BUTTONS " %[%0:1:0:10d %l`Cancel%d%l`Ok%]%H "
#define DIALOG " numbers and a text %n label : %{numbers%}%20t %n digits: %{10%}%10t %n" BUTTONS
#define DIALOG_WITHOUT_LABEL " numbers %n label : %{numbers%}%20t %n %{10%}%10t %n" BUTTONS
#define DIALOG_WITH_DUPLICATES " numbers %n text : %{numbers%}%20t %n text : %{10%}%10t %n" BUTTONS
#define DIALOG_WITHOUT_END " numbers %n label : %{numbers %n"

#define DEFINITION                                                                   \
  {                                                                                  \
    NULL, FAILURE == null_create ? NULL : create, second,                            \
        FAILURE == null_dialog           ? NULL                                      \
        : FAILURE == dialog_without_end  ? DIALOG_WITHOUT_END                        \
        : FAILURE == field_without_label ? DIALOG_WITHOUT_LABEL                      \
        : FAILURE == duplicate_labels    ? DIALOG_WITH_DUPLICATES                    \
                                         : DIALOG,                                      \
        BUTTONS, FAILURE == wrong_icon_name ? "letters" : NAME_TEXT, "numbers", NULL \
  }

const ZelIconDef_ PASTE(ICONDEF_, NAME) = DEFINITION;
static const ZelIconDef_ other_definition = DEFINITION;

#define ICON                                                                \
  {                                                                         \
    FAILURE == icon_of_another_folder ? "elsewhere" : NAME_TEXT, NAME_TEXT, \
        FAILURE == icon_without_definition ? NULL                           \
        : FAILURE == definition_elsewhere  ? &other_definition              \
                                           : &PASTE(ICONDEF_, NAME),         \
        NULL, NULL                                                          \
  }
#define END \
  { "", "", NULL, NULL, NULL }

#if defined(BREAK_other_icon_creates_nothing)
static def_unittype* create_nothing(int unused, int also_unused, const ZelIconDef_* icon,
                                    def_unittype* parent) {
  (void)unused, (void)also_unused, (void)icon, (void)parent;
  return NULL;
}

ZEL_EXPORT extern const ZelIconDef_ ICONDEF_other;
const ZelIconDef_ ICONDEF_other = {NULL,    create_nothing, second,    DIALOG,
                                   BUTTONS, "other",        "nothing", NULL};
#endif

const zel_icon_entry PASTE(gasIconsOfFolder_, NAME)[] = {
#if defined(BREAK_other_icon_creates_nothing)
    {NAME_TEXT, "other", &ICONDEF_other, NULL, NULL},
#endif
#if !defined(BREAK_no_icons)
    ICON,
#endif
#if !defined(BREAK_icons_without_end)
    END
#endif
};
static const zel_icon_entry other_icons[] = {ICON, END};

const zel_folder PASTE(gsFolder_, NAME) = {
    NULL, NAME_TEXT, FAILURE == folder_elsewhere ? other_icons : PASTE(gasIconsOfFolder_, NAME)};

#if defined(BREAK_small_record)
const char* const PASTE(Kem_V_of_, NAME) = "7.9";
#else
const zel_version PASTE(Kem_V_of_, NAME) = {"7.9", "7.9"};
#endif

/* Loading */

#if defined(BREAK_undefined_symbol)
void there_is_no_such_function(void);
ZEL_EXPORT void call_undefined_symbol(void);
void call_undefined_symbol(void) {
  there_is_no_such_function();
}
#endif

__attribute__((constructor)) static void load(void) {
  if (FAILURE == crashes_at_loading) crash();
}

__attribute__((destructor)) static void unload(void) {
  if (FAILURE == crashes_at_the_end) crash();
}
