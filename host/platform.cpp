// The operations of the interface as C functions: each leads to the process's
// host, and does nothing where there is none or where it does not admit the call.
#include "host/platform.h"

#include <cstdarg>
#include <new>
#include <optional>
#include <string>

#include "zel/zel.h"

using zelhost::Direction;
using zelhost::Host;
using zelhost::PortKind;
using zelhost::PortType;

namespace {

Host* the_host = nullptr;

// The one that a call of the operation leads to.
Host* host_for(const char* operation) {
  return the_host != nullptr && the_host->admits(operation) ? the_host : nullptr;
}

// One kind of port with its parameter, read from the arguments. Null and the
// reason if they are none.
std::optional<PortType> read_port_type(std::va_list& arguments, std::string& why) {
  const int kind = va_arg(arguments, int);
  switch (kind) {
    case TAG_FLOAT: {
      const int count = va_arg(arguments, int);
      if (count > 0) return PortType{PortKind::kFloats, count};
      why = "TAG_FLOAT with count " + std::to_string(count);
      return {};
    }
    case TAG_STRING: {
      const int count = va_arg(arguments, int);
      if (count == 1) return PortType{PortKind::kText, 1};
      why = "TAG_STRING with count " + std::to_string(count);
      return {};
    }
    case TAG_DYN: {
      const char* const letter = va_arg(arguments, const char*);
      const std::string element = letter == nullptr ? "" : letter;
      if (element == "F") return PortType{PortKind::kFloatArray, 1};
      if (element == "I") return PortType{PortKind::kIntegerArray, 1};
      why = "TAG_DYN with an element type that is neither \"F\" nor \"I\"";
      return {};
    }
    default:
      why = "no port kind: " + std::to_string(kind);
      return {};
  }
}

def_unittype* make_unit(Host& host, int tag, std::va_list& arguments) {
  Host::UnitDescription unit;
  while (tag != TAG_END) {
    if (tag != TAG_INP && tag != TAG_OUT)
      return host.refuse_unit("neither TAG_INP, TAG_OUT nor TAG_END: " + std::to_string(tag));
    std::string why;
    const std::optional<PortType> type = read_port_type(arguments, why);
    if (!type) return host.refuse_unit(why);
    (tag == TAG_INP ? unit.inputs : unit.outputs).push_back(*type);
    tag = va_arg(arguments, int);
  }
  unit.parent = va_arg(arguments, def_unittype*);
  return host.make_unit(unit);
}

}  // namespace

Host* zelhost::current_host() {
  return the_host;
}

void zelhost::set_current_host(Host* host) {
  the_host = host;
}

def_unittype* primitive_unit(int tag, ...) {
  Host* const host = host_for("primitive_unit");
  if (host == nullptr) return nullptr;
  std::va_list arguments;
  va_start(arguments, tag);
  def_unittype* unit = nullptr;
  try {
    unit = make_unit(*host, tag, arguments);
  } catch (const std::bad_alloc&) {
    unit = host->refuse_unit("no memory for its ports");
  }
  va_end(arguments);
  return unit;
}

void zel_name_unit(const char* name, def_unittype* unit) {
  if (Host* const host = host_for("zel_name_unit")) host->name_unit(name, unit);
}

void zel_indicate_export_of_methods(def_unittype* unit) {
  if (Host* const host = host_for("zel_indicate_export_of_methods")) host->export_methods(unit);
}

void return_unit(def_unittype* root) {
  if (Host* const host = host_for("return_unit")) host->set_root(root);
}

void label(def_unittype* root, const char* text) {
  if (Host* const host = host_for("label")) host->set_label(root, text);
}

int is_not_unit(const def_unittype* unit) {
  Host* const host = host_for("is_not_unit");
  return host != nullptr && host->is_unit(unit) ? 0 : 1;
}

int error_msg(int code, const char* text, int, int) {
  if (Host* const host = host_for("error_msg")) host->report_error(code, text);
  return 0;
}

void kem_iconform_for_method(const char* method, const char* help, int, int) {
  if (Host* const host = host_for("kem_iconform_for_method")) host->describe_method(method, help);
}

void SET_INFO_FOR_METHOD(const char* method) {
  if (Host* const host = host_for("SET_INFO_FOR_METHOD")) host->select_method(method);
}

void INFO_FOR_INP(int input, const char* text) {
  if (Host* const host = host_for("INFO_FOR_INP"))
    host->describe_port(Direction::kInput, input, text);
}

void INFO_FOR_OUT(int output, const char* text) {
  if (Host* const host = host_for("INFO_FOR_OUT"))
    host->describe_port(Direction::kOutput, output, text);
}

char* TVAL(int field) {
  Host* const host = host_for("TVAL");
  return host == nullptr ? nullptr : host->dialog_text(field);
}

int zel_dim_of_dyn_inp(const def_unittype* unit, int input, int reserved) {
  Host* const host = host_for("zel_dim_of_dyn_inp");
  return host == nullptr ? 0 : host->array_length(unit, input, reserved);
}

int zel_reassign(const def_unittype* unit, int output, int reserved, int length, void* array) {
  Host* const host = host_for("zel_reassign");
  return host != nullptr && host->replace_array(unit, output, reserved, length, array) ? 0 : 1;
}
