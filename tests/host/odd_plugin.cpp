// A plug-in that does what the environment variable ODD says, of the things that
// plug-ins do and a host has to live with. Its folder and its icon are called odd, its
// one method is Copy: input 0 "number" goes to output 0, and output 1 is a text
// that says how often Copy ran.
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "zel/zel.h"

namespace {

bool is_asked(const std::string& what) {
  const char* const asked = std::getenv("ODD");
  return asked != nullptr && asked == what;
}

// Says a word when the process ends.
struct Farewell {
  Farewell() = default;
  ~Farewell() {
    if (is_asked("says farewell")) std::puts("farewell");
  }
  Farewell(const Farewell&) = delete;
  Farewell& operator=(const Farewell&) = delete;
};
const Farewell farewell;

int calls = 0;
std::string text;

int copy(def_unittype* unit) {
  if (is_asked("throws a number in Copy")) throw 7;
  if (is_asked("returns 3")) return 3;
  zel_set_float_out(unit, 0, 0, zel_float_inp(unit, 0, 0));
  text = "call " + std::to_string(++calls) + "\n\033[31mof this process";
  zel_set_text_out(unit, 1, text.c_str());
  // Some programs leave it to whoever started them to wait for all they have started.
  if (is_asked("waits for its children"))
    zel_set_float_out(unit, 0, 0, wait(nullptr) == -1 && errno == ECHILD ? 1 : 2);
  return 0;
}

def_unittype* create(int, int, const ZelIconDef_*, def_unittype* parent) {
  if (is_asked("throws an error in create")) throw std::runtime_error("no\nmood");
  if (is_asked("throws a number in create")) throw 7;

  def_unittype* const root = primitive_unit(TAG_END, parent);
  zel_indicate_export_of_methods(root);
  return_unit(root);
  if (is_asked("misuses in create")) primitive_unit(TAG_INP, TAG_FLOAT, 0, TAG_END, root);
  kem_iconform_for_method("Copy", "copies a number", 0, 0);
  SET_INFO_FOR_METHOD("Copy");
  INFO_FOR_INP(0, "number");
  if (is_asked("describes a port too many")) INFO_FOR_INP(7, "number");
  INFO_FOR_OUT(0, "number");
  INFO_FOR_OUT(1, is_asked("describes two ports alike") ? "number" : "text");
  def_unittype* const method = primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_OUT,
                                              TAG_STRING, 1, TAG_END, root);
  zel_name_unit("Copy", method);
  zel_set_method(method, copy);
  label(root, "odd");
  return root;
}

int second(int, int, const ZelIconDef_*, def_unittype*) {
  return 1;
}

}  // namespace

extern "C" {

ZEL_EXPORT extern const ZelIconDef_ ICONDEF_odd;
ZEL_EXPORT extern const zel_icon_entry gasIconsOfFolder_odd[];
ZEL_EXPORT extern const zel_folder gsFolder_odd;
ZEL_EXPORT extern const zel_version Kem_V_of_odd;

const ZelIconDef_ ICONDEF_odd = {nullptr, create, second, "", "", "odd", "", nullptr};
const zel_icon_entry gasIconsOfFolder_odd[] = {{"odd", "odd", &ICONDEF_odd, nullptr, nullptr},
                                               {"", "", nullptr, nullptr, nullptr}};
const zel_folder gsFolder_odd = {nullptr, "odd", gasIconsOfFolder_odd};
const zel_version Kem_V_of_odd = {"7.9", "7.9"};
}
