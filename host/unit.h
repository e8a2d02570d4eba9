// A unit of the tree that a plug-in builds: a root, a group or a method.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "host/port.h"
#include "zel/zel.h"

namespace zelhost {

/// One unit with its ports. The record leads into the object, which stays where it is.
class Unit {
 public:
  Unit(Unit* parent, const std::vector<PortType>& inputs, const std::vector<PortType>& outputs);
  ~Unit() = default;
  Unit(const Unit&) = delete;
  Unit& operator=(const Unit&) = delete;
  Unit(Unit&&) = delete;
  Unit& operator=(Unit&&) = delete;

  /// What the plug-in sees.
  [[nodiscard]] def_unittype* record() { return &record_; }
  [[nodiscard]] const def_unittype* record() const { return &record_; }

  [[nodiscard]] std::deque<Port>& inputs() { return inputs_; }
  [[nodiscard]] std::deque<Port>& outputs() { return outputs_; }
  [[nodiscard]] const std::deque<Port>& inputs() const { return inputs_; }
  [[nodiscard]] const std::deque<Port>& outputs() const { return outputs_; }

  [[nodiscard]] Unit* parent() const { return parent_; }

  /// Enters a unit that was made below this one.
  void add_child(Unit& child) { children_.push_back(&child); }

  /// In the order in which they were made; they belong to the host.
  [[nodiscard]] const std::vector<Unit*>& children() const { return children_; }

  [[nodiscard]] bool is_method() const { return record_.method != nullptr; }

  /// The names from below the root to this unit, joined by ":"; empty for a root.
  [[nodiscard]] std::string qualified_name() const;

  std::string name;      ///< as the plug-in named it; empty until then
  std::string label;     ///< of a root
  bool exports = false;  ///< users see its children

 private:
  def_unittype record_{};
  Unit* parent_;
  // Ports stay where they are: the records lead to them.
  std::deque<Port> inputs_;
  std::deque<Port> outputs_;
  std::vector<zel_port> input_records_;
  std::vector<zel_port> output_records_;
  std::vector<Unit*> children_;
};

}  // namespace zelhost
