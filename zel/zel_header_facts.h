/* What the interface header must amount to, in C as in C++: values of the tags,
 * layout of the records, and what the accessors read and write. Included after
 * zel.h, which has to stand alone. */
#ifndef ZEL_ZEL_HEADER_FACTS_H
#define ZEL_ZEL_HEADER_FACTS_H

/* NOLINTBEGIN(modernize-*): C reads this too. */
#include <stddef.h>

#ifdef __cplusplus
#define kNull nullptr
#else
#define kNull NULL
#endif

typedef struct zel_fact {
  const char* what;
  long long found;
  long long wanted;
} zel_fact;

enum { kMaxFacts = 80 };

/* Facts are listed one by one so that a failing one is named. */
typedef struct zel_facts {
  zel_fact list[kMaxFacts];
  int count;
} zel_facts;

static inline void add_fact(zel_facts* facts, const char* what, long long found, long long wanted) {
  facts->list[facts->count].what = what;
  facts->list[facts->count].found = found;
  facts->list[facts->count].wanted = wanted;
  ++facts->count;
}

static inline void add_tag_facts(zel_facts* facts) {
  add_fact(facts, "TAG_INP", (uint32_t)TAG_INP, 0xfa0a1f01);
  add_fact(facts, "TAG_OUT", (uint32_t)TAG_OUT, 0xfa0a1f02);
  add_fact(facts, "TAG_END", (uint32_t)TAG_END, 0xfa0a1f03);
  add_fact(facts, "TAG_DYN", (uint32_t)TAG_DYN, 0xfa0a1f04);
  add_fact(facts, "TAG_FLOAT", (uint32_t)TAG_FLOAT, 0xfa0a1f06);
  add_fact(facts, "TAG_STRING", (uint32_t)TAG_STRING, 0xfa0a1f07);
  add_fact(facts, "TAG_INP as a signed number", TAG_INP, -99999999);
}

/* Every field is one slot of a pointer's size. */
static inline void add_slot(zel_facts* facts, const char* what, size_t offset, int slot) {
  add_fact(facts, what, (long long)offset, (long long)sizeof(void*) * slot);
}

static inline void add_layout_facts(zel_facts* facts) {
  add_slot(facts, "zel_element", sizeof(zel_element), 1);
  add_slot(facts, "zel_dyn_array", sizeof(zel_dyn_array), 1);
  add_slot(facts, "zel_port", sizeof(zel_port), 1);

  add_slot(facts, "def_unittype.inputs", offsetof(def_unittype, inputs), 0);
  add_slot(facts, "def_unittype.outputs", offsetof(def_unittype, outputs), 1);
  add_slot(facts, "def_unittype.parent", offsetof(def_unittype, parent), 2);
  add_slot(facts, "def_unittype.method", offsetof(def_unittype, method), 3);
  add_slot(facts, "def_unittype.user", offsetof(def_unittype, user), 4);
  add_slot(facts, "def_unittype", sizeof(def_unittype), 5);

  add_slot(facts, "ZelIconDef_.unused_first", offsetof(ZelIconDef_, unused_first), 0);
  add_slot(facts, "ZelIconDef_.create", offsetof(ZelIconDef_, create), 1);
  add_slot(facts, "ZelIconDef_.second", offsetof(ZelIconDef_, second), 2);
  add_slot(facts, "ZelIconDef_.dialog", offsetof(ZelIconDef_, dialog), 3);
  add_slot(facts, "ZelIconDef_.buttons", offsetof(ZelIconDef_, buttons), 4);
  add_slot(facts, "ZelIconDef_.name", offsetof(ZelIconDef_, name), 5);
  add_slot(facts, "ZelIconDef_.text", offsetof(ZelIconDef_, text), 6);
  add_slot(facts, "ZelIconDef_.unused_last", offsetof(ZelIconDef_, unused_last), 7);
  add_slot(facts, "ZelIconDef_", sizeof(ZelIconDef_), 8);

  add_slot(facts, "zel_icon_entry.folder", offsetof(zel_icon_entry, folder), 0);
  add_slot(facts, "zel_icon_entry.icon", offsetof(zel_icon_entry, icon), 1);
  add_slot(facts, "zel_icon_entry.definition", offsetof(zel_icon_entry, definition), 2);
  add_slot(facts, "zel_icon_entry.unused_first", offsetof(zel_icon_entry, unused_first), 3);
  add_slot(facts, "zel_icon_entry.unused_last", offsetof(zel_icon_entry, unused_last), 4);
  add_slot(facts, "zel_icon_entry", sizeof(zel_icon_entry), 5);

  add_slot(facts, "zel_folder.unused", offsetof(zel_folder, unused), 0);
  add_slot(facts, "zel_folder.name", offsetof(zel_folder, name), 1);
  add_slot(facts, "zel_folder.icons", offsetof(zel_folder, icons), 2);
  add_slot(facts, "zel_folder", sizeof(zel_folder), 3);

  add_slot(facts, "zel_version.plugin", offsetof(zel_version, plugin), 0);
  add_slot(facts, "zel_version.host", offsetof(zel_version, host), 1);
  add_slot(facts, "zel_version", sizeof(zel_version), 2);
}

static inline int method_of_the_facts(def_unittype* unit) {
  return unit != kNull;
}

/* A unit with inputs: two floats, a text, no text, an array of floats, one of
 * integers; and outputs: a float, two floats, a text. */
static inline void add_accessor_facts(zel_facts* facts) {
  float in_floats[2] = {0.5F, -2.25F};
  char in_text[] = "text";
  float in_array[3] = {1.5F, 2.5F, 3.5F};
  int32_t in_integers[2] = {-7, INT32_MAX};
  float out_floats[3] = {10.0F, 20.0F, 30.0F};
  zel_dyn_array floats;
  zel_dyn_array integers;
  zel_element in_elements[6];
  zel_element out_elements[4];
  zel_port inputs[5];
  zel_port outputs[3];
  def_unittype parent = {kNull, kNull, kNull, kNull, kNull};
  def_unittype unit = {inputs, outputs, &parent, kNull, kNull};
  int i;
  floats.data = in_array;
  integers.data = in_integers;
  in_elements[0].value = &in_floats[0];
  in_elements[1].value = &in_floats[1];
  in_elements[2].value = in_text;
  in_elements[3].value = kNull;
  in_elements[4].value = &floats;
  in_elements[5].value = &integers;
  inputs[0].elements = &in_elements[0];
  for (i = 1; i < 5; ++i) inputs[i].elements = &in_elements[i + 1];
  for (i = 0; i < 3; ++i) out_elements[i].value = &out_floats[i];
  outputs[0].elements = &out_elements[0];
  outputs[1].elements = &out_elements[1];
  out_elements[3].value = kNull;
  outputs[2].elements = &out_elements[3];

  add_fact(facts, "zel_float_inp, element 0, in quarters", (int)(4 * zel_float_inp(&unit, 0, 0)),
           2);
  add_fact(facts, "zel_float_inp, element 1, in quarters", (int)(4 * zel_float_inp(&unit, 0, 1)),
           -9);
  add_fact(facts, "zel_text_inp", zel_text_inp(&unit, 1) == in_text, 1);
  add_fact(facts, "zel_text_inp of no text", zel_text_inp(&unit, 2) == kNull, 1);
  add_fact(facts, "zel_floats_inp", zel_floats_inp(&unit, 3) == in_array, 1);
  add_fact(facts, "zel_integers_inp", zel_integers_inp(&unit, 4) == in_integers, 1);
  add_fact(facts, "zel_integers_inp, element 1", zel_integers_inp(&unit, 4)[1], INT32_MAX);
  add_fact(facts, "zel_parent", zel_parent(&unit) == &parent, 1);
  add_fact(facts, "zel_user before", zel_user(&unit) == kNull, 1);
  zel_set_user(&unit, in_text);
  add_fact(facts, "zel_user", zel_user(&unit) == in_text, 1);
  add_fact(facts, "zel_set_user", unit.user == in_text, 1);
  add_fact(facts, "zel_set_user leaves the parent's", parent.user == kNull, 1);
  zel_set_method(&unit, method_of_the_facts);
  add_fact(facts, "zel_set_method", unit.method == method_of_the_facts, 1);
  add_fact(facts, "method", unit.method(&unit), 1);
  zel_set_float_out(&unit, 1, 1, 0.25F);
  zel_set_float_out(&unit, 0, 0, -4.0F);
  add_fact(facts, "zel_set_float_out, output 0, in quarters", (int)(4 * out_floats[0]), -16);
  add_fact(facts, "zel_set_float_out elsewhere, in quarters", (int)(4 * out_floats[1]), 80);
  add_fact(facts, "zel_set_float_out, output 1, element 1, in quarters", (int)(4 * out_floats[2]),
           1);
  zel_set_text_out(&unit, 2, in_text);
  add_fact(facts, "zel_set_text_out", out_elements[3].value == in_text, 1);
  zel_set_text_out(&unit, 2, kNull);
  add_fact(facts, "zel_set_text_out of no text", out_elements[3].value == kNull, 1);
}

static inline zel_facts all_zel_facts(void) {
  zel_facts facts;
  facts.count = 0;
  add_tag_facts(&facts);
  add_layout_facts(&facts);
  add_accessor_facts(&facts);
  return facts;
}

/* NOLINTEND(modernize-*) */

#endif
