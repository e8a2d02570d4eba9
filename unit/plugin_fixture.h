// Instances of the plug-in in a recording host, and methods fired on them.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "unit/plugin.h"
#include "unit/recording_host.h"
#include "unit/sdpsol_wrapper.h"
#include "unit/stderr_packets.h"
#include "unit/test_support.h"

namespace unit_test {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// What outputs hold before a method writes them.
constexpr float kUnwritten = 77.0F;

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;
using Packets = std::vector<std::string>;

class PluginTest : public ::testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(host_.misuses, std::vector<std::string>()); }

  /// An instance whose files are in `dir_`.
  def_unittype* instance(const std::string& command, const std::string& name = "sdpsol") {
    host_.dialog = {command, dir_.path(name + ".in"), dir_.path(name + ".out")};
    def_unittype* const root = icon().create(0, 0, &icon(), host_.parent());
    if (root == nullptr) throw std::runtime_error("no instance");
    host_.take_calls();
    return root;
  }

  /// An instance whose command answers with `result`, whatever the problem.
  def_unittype* answering(std::string_view result) {
    answer_with(result);
    return instance(script(dir_, "cp " + dir_.path("answer") + " \"$3\"\n"));
  }

  void answer_with(std::string_view result) { write_file(dir_.path("answer"), result); }

  /// An instance that asks the real solver.
  def_unittype* solving(const std::string& name = "sdpsol") {
    return instance(SDPSOL_BIN_DIR "/sdpsol", name);
  }

  static sdpsol_wrapper& driver_of(const def_unittype* unit) {
    return *static_cast<sdpsol_wrapper*>(unit->user);
  }

  /// Runs the method of the unit. What it throws passes; what it printed is in
  /// `said_` and `packets_`, its calls of the host are in `calls_`, and its float
  /// outputs were kUnwritten before.
  void fire_anyhow(def_unittype* unit) {
    RecordingHost::fill_float_outs(unit, kUnwritten);
    host_.take_calls();
    host_.floats_at_hand_overs.clear();
    StderrPackets packets;
    const CapturedOutput output;
    try {
      EXPECT_EQ(unit->method(unit), 0);
    } catch (...) {
      keep(packets, output);
      throw;
    }
    keep(packets, output);
  }

  /// As above; nothing may be written to standard error.
  void fire(def_unittype* unit) {
    fire_anyhow(unit);
    EXPECT_EQ(packets_, Packets());
  }

  def_unittype* find(const def_unittype* root, std::string_view name) const {
    return host_.find(root, name);
  }

  static float out(const def_unittype* unit, int output, int element = 0) {
    return RecordingHost::float_out(unit, output, element);
  }

  /// What "General:Get_Result" shows now: feasible, objective, error code, and the values.
  struct Shown {
    float feasible = 0;
    float objective = 0;
    float code = 0;
    Floats values;
    bool operator==(const Shown&) const = default;
  };

  Shown shown_on(def_unittype* unit) {
    return {out(unit, 0), out(unit, 2), out(unit, 3),
            RecordingHost::array_out(unit, 1).value_or(Floats{kUnwritten})};
  }

  Shown get_result(const def_unittype* root) {
    def_unittype* const unit = find(root, "General:Get_Result");
    fire(unit);
    return shown_on(unit);
  }

  RecordingHost host_;
  TestFolder dir_;
  std::string said_;
  std::string calls_;
  Packets packets_;

 private:
  void keep(StderrPackets& packets, const CapturedOutput& output) {
    packets_ = packets.take();
    said_ = output.text();
    calls_ = host_.take_calls();
  }
};

inline std::ostream& operator<<(std::ostream& stream, const std::optional<Floats>& floats) {
  if (!floats) return stream << "no array";
  return stream << ::testing::PrintToString(*floats);
}

/// Compares what two drivers were left with.
inline void expect_same_result(const sdpsol_wrapper::result& found,
                               const sdpsol_wrapper::result& wanted) {
  EXPECT_EQ(found.errorCode, wanted.errorCode);
  EXPECT_EQ(found.feasible, wanted.feasible);
  EXPECT_EQ(found.objectiveValue, wanted.objectiveValue);
  EXPECT_EQ(found.variableNames, wanted.variableNames);
  EXPECT_EQ(found.variableValues, wanted.variableValues);
  EXPECT_EQ(found.valueCount, wanted.valueCount);
}

}  // namespace unit_test
