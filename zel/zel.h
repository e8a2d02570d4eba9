/* The interface between a plug-in and the zel environment, its host.
 *
 * A plug-in is a shared library NAME.so that brings a folder of icons. From an
 * icon a user creates instances; an instance is a tree of units: a root, groups,
 * and methods with input and output ports. A network wires ports together and
 * fires methods.
 *
 * The host loads the library and finds what it brings through four records with
 * C linkage: `Kem_V_of_NAME` (zel_version), `gsFolder_NAME` (zel_folder),
 * `gasIconsOfFolder_NAME` (an array of zel_icon_entry) and, for each icon,
 * `ICONDEF_ICON` (ZelIconDef_). The library's calls of the operations below are
 * bound to the host when it is loaded.
 *
 * To create an instance the host shows the icon's dialog and calls the icon's
 * `create`, which describes its methods (kem_iconform_for_method and on), reads
 * the dialog (TVAL) and builds the tree (primitive_unit and on).
 *
 * Thread: the host's, for everything: it calls the plug-in, the plug-in calls
 * the operations from within such a call, and from no other thread, where none of
 * them does anything.
 * Process: the host's, too. A call comes back once, in the process in which it was
 * made, and leaves the working folder, the locale, and standard input, output and
 * error as they are. The library is still loaded when the process ends, and its
 * static objects bear that.
 * Numbers cross in single precision or as 32-bit integers. Counts are from 0.
 * No operation of the host throws, and one that is misused changes nothing; what
 * it returns then is said with each. What a plug-in throws in C++ passes through
 * to whoever called it: a host that cannot catch it ends there.
 */
#ifndef ZEL_ZEL_H
#define ZEL_ZEL_H

#ifdef __cplusplus
#include <cstdint>
extern "C" {
#else
#include <stdint.h>
#endif

/* Marks what a plug-in exports when everything else in it is hidden. */
#define ZEL_EXPORT __attribute__((visibility("default")))

/* Records: units and their ports. The host makes and frees them. A plug-in
 * reads and writes them through the functions that follow, so that the layout of
 * another host changes nothing but this file. */

typedef struct def_unittype def_unittype;

/* Runs a method on its unit. Returns 0; the host takes anything else, and an
 * exception, as failure of the method. The instance can be used again. */
typedef int zel_method(def_unittype* unit);

/* `value` points to one float (TAG_FLOAT), is the text itself or null
 * (TAG_STRING), or points to a zel_dyn_array (TAG_DYN). */
typedef struct zel_element {
  void* value;
} zel_element;

/* The host's record of an array goes on behind `data`: its length is the
 * answer of zel_dim_of_dyn_inp. `data` may be null where that is 0. */
typedef struct zel_dyn_array {
  void* data;
} zel_dyn_array;

/* As many elements as the port's count. */
typedef struct zel_port {
  zel_element* elements;
} zel_port;

struct def_unittype {
  zel_port* inputs;
  zel_port* outputs;
  def_unittype* parent;
  zel_method* method; /* set by the plug-in, on methods only */
  void* user;         /* the plug-in's own; the host never looks at what it points to.
                       * What the plug-in knows the instance by: not null, the same in
                       * all its units, and another one in each instance */
};

/* All of these take a unit that primitive_unit returned and a port and element
 * that it was given; nothing is checked. */

static inline def_unittype* zel_parent(const def_unittype* unit) {
  return unit->parent;
}

static inline void* zel_user(const def_unittype* unit) {
  return unit->user;
}

static inline void zel_set_user(def_unittype* unit, void* user) {
  unit->user = user;
}

static inline void zel_set_method(def_unittype* unit, zel_method* method) {
  unit->method = method;
}

/* TAG_FLOAT inputs. */
static inline float zel_float_inp(const def_unittype* unit, int input, int element) {
  return *(const float*)unit->inputs[input].elements[element].value;
}

/* TAG_STRING inputs: NUL-terminated, or null where nobody has set a text. The
 * host's, and valid while the method runs. */
static inline const char* zel_text_inp(const def_unittype* unit, int input) {
  return (const char*)unit->inputs[input].elements[0].value;
}

/* TAG_DYN inputs of element type "F". The host's, valid while the method runs. */
static inline const float* zel_floats_inp(const def_unittype* unit, int input) {
  return (const float*)((const zel_dyn_array*)unit->inputs[input].elements[0].value)->data;
}

/* TAG_DYN inputs of element type "I". As above. */
static inline const int32_t* zel_integers_inp(const def_unittype* unit, int input) {
  return (const int32_t*)((const zel_dyn_array*)unit->inputs[input].elements[0].value)->data;
}

/* TAG_FLOAT outputs. */
static inline void zel_set_float_out(const def_unittype* unit, int output, int element,
                                     float value) {
  *(float*)unit->outputs[output].elements[element].value = value;
}

/* TAG_STRING outputs: NUL-terminated, or null for none. The text stays the plug-in's.
 * The host copies it when the method has returned and before it calls the plug-in
 * again: it must live until then, and so be no local variable of the method. */
static inline void zel_set_text_out(const def_unittype* unit, int output, const char* text) {
  unit->outputs[output].elements[0].value = (void*)text;
}

/* Records: what a plug-in exports. The host only reads them. All texts are
 * NUL-terminated and, as the records, live as long as the library is loaded. */

typedef struct ZelIconDef_ ZelIconDef_;

/* Creates an instance below `parent`, which may turn out to be no unit.
 * Returns the root of its tree, or null after telling why with error_msg. */
typedef def_unittype* zel_create(int, int, const ZelIconDef_* icon, def_unittype* parent);

/* Returns 1. */
typedef int zel_second(int, int, const ZelIconDef_* icon, def_unittype* parent);

struct ZelIconDef_ {
  const void* unused_first; /* null */
  zel_create* create;
  zel_second* second;
  const char* dialog;  /* the creation dialog */
  const char* buttons; /* the dialog's row of buttons alone */
  const char* name;
  const char* text;
  const void* unused_last; /* null */
};

/* The array ends with an entry of two empty texts and three nulls. */
typedef struct zel_icon_entry {
  const char* folder;
  const char* icon;
  const ZelIconDef_* definition;
  const void* unused_first; /* null */
  const void* unused_last;  /* null */
} zel_icon_entry;

typedef struct zel_folder {
  const void* unused; /* null */
  const char* name;
  const zel_icon_entry* icons;
} zel_folder;

/* The version of the interface that the plug-in was written for. */
typedef struct zel_version {
  const char* plugin;
  const char* host;
} zel_version;

/* Building the tree, only while an icon's `create` runs: units are made, named
 * and exported then, and never afterwards. is_not_unit and error_msg may be called
 * at any time. */

/* What primitive_unit's arguments start with. Signed 32-bit numbers: TAG_INP is
 * 0xfa0a1f01, the others count up from there. */
enum {
  TAG_INP = -99999999,
  TAG_OUT = -99999998,
  TAG_END = -99999997,
  TAG_DYN = -99999996,
  TAG_FLOAT = -99999994,
  TAG_STRING = -99999993
};

/* Makes a unit below a parent. The arguments are one descriptor per port, then
 * TAG_END and the parent (def_unittype*). A descriptor is three arguments:
 *   TAG_INP or TAG_OUT,
 *   TAG_FLOAT, int count          count floats, 0 at first; 1 to 1000000
 *   TAG_STRING, 1                 a text, null at first
 *   TAG_DYN, const char* "F"      an array of floats, or "I": of 32-bit integers;
 *                                 empty at first
 * Inputs and outputs are numbered separately, each from 0 in the order given.
 * The unit lives as long as the instance. `method` and `user` are null.
 * Returns null if there is no room for a unit, and on misuse: if a descriptor is none,
 * if the parent is no unit, or while no instance is created. */
def_unittype* primitive_unit(int tag, ...);

/* Names a unit that is a group or a method, for its siblings uniquely. The text
 * is copied. */
void zel_name_unit(const char* name, def_unittype* unit);

/* Says that the unit's children are methods or groups that users see: for the
 * root and for groups. */
void zel_indicate_export_of_methods(def_unittype* unit);

/* Says which unit is the instance's root, once per instance and before the root
 * has children. */
void return_unit(def_unittype* root);

/* Gives a root the text that users see under it: the last call of building, once the
 * tree is complete. The text is copied. */
void label(def_unittype* root, const char* text);

/* Nonzero when the pointer is null or leads to no unit of this host, and on misuse. */
int is_not_unit(const def_unittype* unit);

/* Reports an error of the plug-in to the user.
 * code: 2 = the parent is no unit, 30 = the unit could not be created.
 * text: who reports it; copied. The last two arguments are 1 and 0.
 * Returns 0. */
int error_msg(int code, const char* text, int, int);

/* Describing methods, only while an icon's `create` runs. Every method has a help
 * text and each of its ports a text, and nothing else has one; they are the same for
 * all instances. A method's name is qualified: "Group:Method", or "Method" directly
 * below the root. Descriptions may be made before the unit they describe. Texts are
 * copied; "%n" in them is a line break. */

/* Gives a method its help text. The last two arguments are 0. */
void kem_iconform_for_method(const char* method, const char* help, int, int);

/* Selects the method that the following port texts belong to. */
void SET_INFO_FOR_METHOD(const char* method);

/* Gives a port of the selected method its text. */
void INFO_FOR_INP(int input, const char* text);
void INFO_FOR_OUT(int output, const char* text);

/* The text of the dialog's editable field `field`, while an icon's `create`
 * runs. The host's, and valid until `create` returns: what is needed later is
 * copied. Null on misuse, also if there is no such field. */
char* TVAL(int field);

/* Arrays, while a method runs */

/* The length of a TAG_DYN input. The last argument is 0. Does not change while
 * the method runs, and costs next to nothing. Returns 0 on misuse. */
int zel_dim_of_dyn_inp(const def_unittype* unit, int input, int);

/* Replaces a TAG_DYN output by `length` elements at `array`, of the port's
 * element type. The third argument is 0.
 * array: from C++ new[]: `new float[length]()`, `new std::int32_t[length]()`;
 * from then on the host's, which frees it with delete[]. The same array must not
 * be handed over twice. May be null if the length is 0.
 * Returns 0; nonzero on misuse: the array stays the caller's. */
int zel_reassign(const def_unittype* unit, int output, int, int length, void* array);

#ifdef __cplusplus
}
#endif

#endif
