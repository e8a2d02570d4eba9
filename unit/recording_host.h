// A host for tests: it gives the plug-in the operations of zel/zel.h, as
// functions that the test program exports, keeps units, ports and arrays, and
// notes every call with all its arguments as a line of text, such as
//   primitive_unit(TAG_INP, TAG_STRING, 1, TAG_END, General)
//   zel_name_unit("Set_Definition", #3)
//
// Units are shown as "host" (the unit below which instances are made), by their
// name ("General", "General:Get_Result"), or before they have one by the number
// of the call of primitive_unit that made them, from 1.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zel/zel.h"

namespace unit_test {

/// At most one at a time; the operations reach it while it lives. Drivers of the
/// plug-in outlive it, units and arrays do not.
class RecordingHost {
 public:
  struct Unit;

  RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;
  ~RecordingHost();

  // How it behaves.

  /// The dialog's fields. TVAL answers null where there is no text.
  std::vector<std::optional<std::string>> dialog{"sdpsol", "sdpsol.in", "sdpsol.out"};
  /// is_not_unit answers 1 whatever it is asked.
  bool knows_no_unit = false;
  /// This call of primitive_unit, from 1, makes no unit. 0: all do.
  int refused_unit = 0;

  // What it saw.

  std::vector<std::string> calls;
  /// The user pointer, at each of these calls, of the unit it was about; null without one.
  std::vector<const void*> users_at_calls;
  /// At each hand-over of an array: all float outputs of its unit as they were
  /// then, one output after the other.
  std::vector<std::vector<float>> floats_at_hand_overs;
  /// What a real host would be hurt by.
  std::vector<std::string> misuses;

  /// The calls as one text, a line each, and forgets them.
  std::string take_calls();

  // Units.

  def_unittype* parent();
  /// The unit of this name ("General:Get_Result") below a root. Throws without one.
  def_unittype* find(const def_unittype* root, std::string_view name) const;
  /// All units of an instance, the root first, as they were made.
  std::vector<def_unittype*> tree(const def_unittype* root) const;

  // Ports. All throw std::out_of_range where there is no such port.

  static void set_float(def_unittype* unit, int input, int element, float value);
  static void set_text(def_unittype* unit, int input, const std::optional<std::string>& text);
  /// The data end where readable memory ends.
  static void set_array(def_unittype* unit, int input, std::span<const float> values);
  static void set_array(def_unittype* unit, int input, std::span<const std::int32_t> values);
  /// Memory of the caller's.
  static void lend_array(def_unittype* unit, int input, void* data, int length);
  /// What zel_dim_of_dyn_inp says, whatever there is.
  static void claim_length(def_unittype* unit, int input, int length);

  static void fill_float_outs(def_unittype* unit, float value);
  static float float_out(const def_unittype* unit, int output, int element = 0);
  /// From now on both outputs are one memory: the later write shows.
  static void share_float_out(def_unittype* unit, int output, int with);
  /// What was handed over last. No value: a null array, or never any.
  static std::optional<std::vector<float>> array_out(const def_unittype* unit, int output);

  // For the operations.

  static RecordingHost& current();
  void note(std::string call, const def_unittype* about = nullptr);
  std::string shown(const def_unittype* unit) const;
  Unit* known(const def_unittype* unit) const;
  Unit& add_unit(def_unittype* parent);
  int count_primitive_unit() { return ++made_; }

 private:
  std::unique_ptr<Unit> parent_;
  std::vector<std::unique_ptr<Unit>> units_;
  std::map<const def_unittype*, Unit*> by_address_;
  int made_ = 0;
};

}  // namespace unit_test
