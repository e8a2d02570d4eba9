#include "host/unit.h"

namespace zelhost {
namespace {

std::deque<Port> make_ports(const std::vector<PortType>& types) {
  std::deque<Port> ports;
  for (const PortType& type : types) ports.emplace_back(type);
  return ports;
}

std::vector<zel_port> records_of(std::deque<Port>& ports) {
  std::vector<zel_port> records;
  records.reserve(ports.size());
  for (Port& port : ports) records.push_back(*port.record());
  return records;
}

}  // namespace

Unit::Unit(Unit* parent, const std::vector<PortType>& inputs, const std::vector<PortType>& outputs)
    : parent_(parent),
      inputs_(make_ports(inputs)),
      outputs_(make_ports(outputs)),
      input_records_(records_of(inputs_)),
      output_records_(records_of(outputs_)) {
  record_.inputs = input_records_.data();
  record_.outputs = output_records_.data();
  if (parent != nullptr) record_.parent = parent->record();
}

std::string Unit::qualified_name() const {
  // The parent of a root is the environment, which has no parent.
  if (parent_ == nullptr || parent_->parent_ == nullptr) return {};
  const std::string above = parent_->qualified_name();
  return above.empty() ? name : above + ":" + name;
}

}  // namespace zelhost
