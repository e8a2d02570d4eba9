#include "unit/recording_host.h"

#include <cstdarg>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "unit/guarded_array.h"

namespace unit_test {

struct Port {
  int kind = 0;
  std::string parameter;
  std::vector<float> floats;
  std::string text;
  zel_dyn_array array{nullptr};
  int length = 0;
  std::unique_ptr<GuardedArray> input;
  std::unique_ptr<float[]> handed_over;
  std::vector<zel_element> elements;
};

using Ports = std::vector<std::unique_ptr<Port>>;

namespace {

RecordingHost* the_host = nullptr;

std::vector<zel_port> records_of(const Ports& ports) {
  std::vector<zel_port> records;
  for (const auto& port : ports) records.push_back({port->elements.data()});
  return records;
}

std::string quoted(const char* text) {
  return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
}

template <class... Pieces>
std::string call(const std::string& operation, const Pieces&... pieces) {
  std::string text = operation + "(";
  const char* between = "";
  const auto add = [&](const auto& piece) {
    text += between;
    if constexpr (std::is_same_v<std::decay_t<decltype(piece)>, int>) {
      text += std::to_string(piece);
    } else {
      text += piece;
    }
    between = ", ";
  };
  (add(pieces), ...);
  return text + ")";
}

}  // namespace

struct RecordingHost::Unit : def_unittype {
  int number = 0;
  std::string name;
  Ports input_ports;
  Ports output_ports;
  std::vector<zel_port> input_records;
  std::vector<zel_port> output_records;

  void finish_ports() {
    input_records = records_of(input_ports);
    output_records = records_of(output_ports);
    inputs = input_records.data();
    outputs = output_records.data();
  }
};

namespace {

Port& port_of(const Ports& ports, int index, int kind) {
  Port& port = *ports.at(static_cast<std::size_t>(index));
  if (port.kind != kind) throw std::out_of_range("a port of another kind");
  return port;
}

RecordingHost::Unit& unit_of(const def_unittype* unit) {
  RecordingHost::Unit* const known = RecordingHost::current().known(unit);
  if (known == nullptr) throw std::out_of_range("no unit of this host");
  return *known;
}

Port& input_of(const def_unittype* unit, int index, int kind) {
  return port_of(unit_of(unit).input_ports, index, kind);
}

Port& output_of(const def_unittype* unit, int index, int kind) {
  return port_of(unit_of(unit).output_ports, index, kind);
}

template <class Number>
void set_numbers(def_unittype* unit, int input, std::span<const Number> values,
                 const char* letter) {
  Port& port = input_of(unit, input, TAG_DYN);
  if (port.parameter != letter) throw std::out_of_range("an array of another kind");
  port.input = std::make_unique<GuardedArray>(std::as_bytes(values));
  RecordingHost::lend_array(unit, input, port.input->data(), static_cast<int>(values.size()));
}

}  // namespace

RecordingHost::RecordingHost() : parent_(std::make_unique<Unit>()) {
  if (the_host != nullptr) throw std::logic_error("there is another host");
  the_host = this;
  parent_->name = "host";
}

RecordingHost::~RecordingHost() {
  the_host = nullptr;
}

RecordingHost& RecordingHost::current() {
  return *the_host;
}

std::string RecordingHost::take_calls() {
  std::string text;
  for (const std::string& line : calls) text += line + "\n";
  calls.clear();
  users_at_calls.clear();
  return text;
}

def_unittype* RecordingHost::parent() {
  return parent_.get();
}

RecordingHost::Unit* RecordingHost::known(const def_unittype* unit) const {
  if (unit == parent_.get()) return parent_.get();
  const auto found = by_address_.find(unit);
  return found == by_address_.end() ? nullptr : found->second;
}

std::string RecordingHost::shown(const def_unittype* unit) const {
  if (unit == nullptr) return "null";
  const Unit* const ours = known(unit);
  if (ours == nullptr) return "no unit";
  if (ours->name.empty()) return "#" + std::to_string(ours->number);
  const Unit* const above = known(ours->parent);
  const bool in_group = above != nullptr && above != parent_.get() && !above->name.empty();
  return (in_group ? above->name + ":" : "") + ours->name;
}

std::vector<def_unittype*> RecordingHost::tree(const def_unittype* root) const {
  std::vector<def_unittype*> found;
  for (const auto& unit : units_) {
    for (const def_unittype* above = unit.get(); above != nullptr; above = above->parent) {
      if (above == root) found.push_back(unit.get());
    }
  }
  return found;
}

def_unittype* RecordingHost::find(const def_unittype* root, std::string_view name) const {
  for (def_unittype* const unit : tree(root)) {
    if (shown(unit) == name) return unit;
  }
  throw std::out_of_range("no unit " + std::string(name));
}

RecordingHost::Unit& RecordingHost::add_unit(def_unittype* parent) {
  Unit& unit = *units_.emplace_back(std::make_unique<Unit>());
  unit.number = made_;
  unit.parent = parent;
  by_address_[&unit] = &unit;
  return unit;
}

void RecordingHost::note(std::string call, const def_unittype* about) {
  calls.push_back(std::move(call));
  users_at_calls.push_back(about == nullptr ? nullptr : about->user);
}

void RecordingHost::set_float(def_unittype* unit, int input, int element, float value) {
  input_of(unit, input, TAG_FLOAT).floats.at(static_cast<std::size_t>(element)) = value;
}

void RecordingHost::set_text(def_unittype* unit, int input,
                             const std::optional<std::string>& text) {
  Port& port = input_of(unit, input, TAG_STRING);
  port.text = text.value_or("");
  port.elements[0].value = text ? port.text.data() : nullptr;
}

void RecordingHost::set_array(def_unittype* unit, int input, std::span<const float> values) {
  set_numbers(unit, input, values, "F");
}

void RecordingHost::set_array(def_unittype* unit, int input, std::span<const std::int32_t> values) {
  set_numbers(unit, input, values, "I");
}

void RecordingHost::lend_array(def_unittype* unit, int input, void* data, int length) {
  Port& port = input_of(unit, input, TAG_DYN);
  port.array.data = data;
  port.length = length;
}

void RecordingHost::claim_length(def_unittype* unit, int input, int length) {
  input_of(unit, input, TAG_DYN).length = length;
}

void RecordingHost::fill_float_outs(def_unittype* unit, float value) {
  for (const auto& port : unit_of(unit).output_ports) {
    for (float& element : port->floats) element = value;
  }
}

float RecordingHost::float_out(const def_unittype* unit, int output, int element) {
  const Port& port = output_of(unit, output, TAG_FLOAT);
  return *static_cast<const float*>(port.elements.at(static_cast<std::size_t>(element)).value);
}

void RecordingHost::share_float_out(def_unittype* unit, int output, int with) {
  output_of(unit, output, TAG_FLOAT).elements[0].value =
      output_of(unit, with, TAG_FLOAT).elements[0].value;
}

std::optional<std::vector<float>> RecordingHost::array_out(const def_unittype* unit, int output) {
  const Port& port = output_of(unit, output, TAG_DYN);
  if (port.handed_over == nullptr) return std::nullopt;
  const float* const first = port.handed_over.get();
  return std::vector<float>(first, first + port.length);
}

namespace {

const char* tag_name(int tag) {
  switch (tag) {
    case TAG_INP:
      return "TAG_INP";
    case TAG_OUT:
      return "TAG_OUT";
    case TAG_END:
      return "TAG_END";
    case TAG_DYN:
      return "TAG_DYN";
    case TAG_FLOAT:
      return "TAG_FLOAT";
    case TAG_STRING:
      return "TAG_STRING";
    default:
      return nullptr;
  }
}

// A port with a value behind each element, as a method may use it.
std::unique_ptr<Port> make_port(int kind, int count, const char* letter) {
  auto port = std::make_unique<Port>();
  port->kind = kind;
  if (kind == TAG_FLOAT) {
    port->floats.resize(static_cast<std::size_t>(count));
    for (float& element : port->floats) port->elements.push_back({&element});
  } else if (kind == TAG_DYN) {
    port->parameter = letter;
    port->elements.push_back({&port->array});
  } else {
    port->elements.push_back({nullptr});
  }
  return port;
}

std::vector<float> float_outs(const RecordingHost::Unit& unit) {
  std::vector<float> values;
  for (const auto& port : unit.output_ports) {
    if (port->kind != TAG_FLOAT) continue;
    for (const zel_element& element : port->elements) {
      values.push_back(*static_cast<const float*>(element.value));
    }
  }
  return values;
}

}  // namespace

}  // namespace unit_test

using unit_test::call;
using unit_test::Port;
using unit_test::quoted;
using unit_test::RecordingHost;

extern "C" {

def_unittype* primitive_unit(int tag, ...) {
  RecordingHost& host = RecordingHost::current();
  std::string line = "primitive_unit(";
  std::vector<std::pair<int, std::unique_ptr<Port>>> ports;
  std::va_list arguments;
  va_start(arguments, tag);
  for (; tag != TAG_END; tag = va_arg(arguments, int)) {
    const int kind = va_arg(arguments, int);
    const char* const direction = unit_test::tag_name(tag);
    const char* const kind_name = unit_test::tag_name(kind);
    const bool is_port = (tag == TAG_INP || tag == TAG_OUT) &&
                         (kind == TAG_FLOAT || kind == TAG_STRING || kind == TAG_DYN);
    if (!is_port) {
      host.misuses.push_back(line + std::to_string(tag) + ", " + std::to_string(kind) + ")");
      va_end(arguments);
      return nullptr;
    }
    const char* const letter = kind == TAG_DYN ? va_arg(arguments, const char*) : nullptr;
    const int count = kind == TAG_DYN ? 0 : va_arg(arguments, int);
    line += std::string(direction) + ", " + kind_name + ", " +
            (letter == nullptr ? std::to_string(count) : quoted(letter)) + ", ";
    ports.emplace_back(tag, unit_test::make_port(kind, count, letter));
  }
  def_unittype* const parent = va_arg(arguments, def_unittype*);
  va_end(arguments);

  host.note(line + "TAG_END, " + host.shown(parent) + ")", parent);
  const int number = host.count_primitive_unit();
  if (number == host.refused_unit || host.known(parent) == nullptr) return nullptr;
  RecordingHost::Unit& unit = host.add_unit(parent);
  for (auto& [direction, port] : ports) {
    (direction == TAG_INP ? unit.input_ports : unit.output_ports).push_back(std::move(port));
  }
  unit.finish_ports();
  return &unit;
}

void zel_name_unit(const char* name, def_unittype* unit) {
  RecordingHost& host = RecordingHost::current();
  host.note(call("zel_name_unit", quoted(name), host.shown(unit)), unit);
  RecordingHost::Unit* const ours = host.known(unit);
  if (ours != nullptr) ours->name = name;
}

void zel_indicate_export_of_methods(def_unittype* unit) {
  RecordingHost& host = RecordingHost::current();
  host.note(call("zel_indicate_export_of_methods", host.shown(unit)), unit);
}

void return_unit(def_unittype* root) {
  RecordingHost& host = RecordingHost::current();
  host.note(call("return_unit", host.shown(root)), root);
}

void label(def_unittype* root, const char* text) {
  RecordingHost& host = RecordingHost::current();
  host.note(call("label", host.shown(root), quoted(text)), root);
}

int is_not_unit(const def_unittype* unit) {
  RecordingHost& host = RecordingHost::current();
  const bool known = host.known(unit) != nullptr;
  host.note(call("is_not_unit", host.shown(unit)), known ? unit : nullptr);
  return known && !host.knows_no_unit ? 0 : 1;
}

int error_msg(int code, const char* text, int third, int fourth) {
  RecordingHost::current().note(call("error_msg", code, quoted(text), third, fourth));
  return 0;
}

void kem_iconform_for_method(const char* method, const char* help, int third, int fourth) {
  RecordingHost::current().note(
      call("kem_iconform_for_method", quoted(method), quoted(help), third, fourth));
}

void SET_INFO_FOR_METHOD(const char* method) {
  RecordingHost::current().note(call("SET_INFO_FOR_METHOD", quoted(method)));
}

void INFO_FOR_INP(int input, const char* text) {
  RecordingHost::current().note(call("INFO_FOR_INP", input, quoted(text)));
}

void INFO_FOR_OUT(int output, const char* text) {
  RecordingHost::current().note(call("INFO_FOR_OUT", output, quoted(text)));
}

char* TVAL(int field) {
  RecordingHost& host = RecordingHost::current();
  host.note(call("TVAL", field));
  auto& text = host.dialog.at(static_cast<std::size_t>(field));
  return text ? text->data() : nullptr;
}

int zel_dim_of_dyn_inp(const def_unittype* unit, int input, int third) {
  RecordingHost& host = RecordingHost::current();
  host.note(call("zel_dim_of_dyn_inp", host.shown(unit), input, third), unit);
  return unit_test::input_of(unit, input, TAG_DYN).length;
}

int zel_reassign(const def_unittype* unit, int output, int third, int length, void* array) {
  RecordingHost& host = RecordingHost::current();
  host.note(call("zel_reassign", host.shown(unit), output, third, length,
                 array == nullptr ? "null" : "array"),
            unit);
  Port& port = unit_test::output_of(unit, output, TAG_DYN);
  if (port.parameter != "F" || length < 0 || (array == nullptr && length > 0) ||
      (array != nullptr && array == port.handed_over.get())) {
    host.misuses.push_back(host.calls.back());
    return 1;
  }
  host.floats_at_hand_overs.push_back(unit_test::float_outs(unit_test::unit_of(unit)));
  port.handed_over.reset(static_cast<float*>(array));
  port.array.data = array;
  port.length = length;
  return 0;
}
}
