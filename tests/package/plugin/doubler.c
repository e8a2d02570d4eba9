/* A plug-in of somebody who has the interface's header installed and no C++: its one
 * method doubles a number. */
#include <zel/zel.h>

static int twice(def_unittype* unit) {
  zel_set_float_out(unit, 0, 0, 2 * zel_float_inp(unit, 0, 0));
  return 0;
}

static def_unittype* no_room(void) {
  error_msg(30, "doubler", 1, 0);
  return 0;
}

static def_unittype* create(int unused_first, int unused_second, const ZelIconDef_* icon,
                            def_unittype* parent) {
  def_unittype* root;
  def_unittype* method;
  (void)unused_first, (void)unused_second, (void)icon;
  if (is_not_unit(parent)) {
    error_msg(2, "doubler", 1, 0);
    return 0;
  }
  kem_iconform_for_method("Twice", "doubles a number", 0, 0);
  SET_INFO_FOR_METHOD("Twice");
  INFO_FOR_INP(0, "number");
  INFO_FOR_OUT(0, "twice the number");
  root = primitive_unit(TAG_END, parent);
  if (root == 0) return no_room();
  zel_set_user(root, root);
  zel_indicate_export_of_methods(root);
  return_unit(root);
  method = primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_END, root);
  if (method == 0) return no_room();
  zel_name_unit("Twice", method);
  zel_set_user(method, root);
  zel_set_method(method, twice);
  label(root, "doubler");
  return root;
}

static int second(int unused_first, int unused_second, const ZelIconDef_* icon,
                  def_unittype* parent) {
  (void)unused_first, (void)unused_second, (void)icon, (void)parent;
  return 1;
}

ZEL_EXPORT const ZelIconDef_ ICONDEF_doubler = {0, create, second, "", "", "doubler", "", 0};
ZEL_EXPORT const zel_icon_entry gasIconsOfFolder_doubler[] = {
    {"doubler", "doubler", &ICONDEF_doubler, 0, 0}, {"", "", 0, 0, 0}};
ZEL_EXPORT const zel_folder gsFolder_doubler = {0, "doubler", gasIconsOfFolder_doubler};
ZEL_EXPORT const zel_version Kem_V_of_doubler = {"7.9", "7.9"};
