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

// Each takes its place at once. More is rather a mistake than a port.
constexpr int kMaxFloats = 1'000'000;

// Lets the host carry out an operation. What a plug-in calls does not throw.
// @return what `call` returns, or `otherwise` where there is no host, no memory, or
// the host does not admit the call.
template <class Result, class Call>
Result carry_out(const char* operation, Result otherwise, const Call& call) {
  Host* const host = the_host;
  if (host == nullptr) return otherwise;
  try {
    return host->admits(operation) ? call(*host) : otherwise;
  } catch (const std::bad_alloc&) {
    host->refuse_without_memory(operation);
    return otherwise;
  }
}

template <class Call>
void carry_out(const char* operation, const Call& call) {
  carry_out(operation, 0, [&call](Host& host) {
    call(host);
    return 0;
  });
}

// One kind of port with its parameter, read from the arguments. Null and the
// reason if they are none.
std::optional<PortType> read_port_type(std::va_list& arguments, std::string& why) {
  const int kind = va_arg(arguments, int);
  switch (kind) {
    case TAG_FLOAT: {
      const int count = va_arg(arguments, int);
      if (count > 0 && count <= kMaxFloats) return PortType{PortKind::kFloats, count};
      why = "TAG_FLOAT with count " + std::to_string(count);
      if (count > kMaxFloats) why += ", the most is " + std::to_string(kMaxFloats);
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
  Host* const host = the_host;
  if (host == nullptr) return nullptr;
  std::va_list arguments;
  va_start(arguments, tag);
  def_unittype* unit = nullptr;
  try {
    if (host->admits("primitive_unit")) unit = make_unit(*host, tag, arguments);
  } catch (const std::bad_alloc&) {
    host->refuse_without_memory("primitive_unit");
  }
  va_end(arguments);
  return unit;
}

void zel_name_unit(const char* name, def_unittype* unit) {
  carry_out("zel_name_unit", [&](Host& host) { host.name_unit(name, unit); });
}

void zel_indicate_export_of_methods(def_unittype* unit) {
  carry_out("zel_indicate_export_of_methods", [&](Host& host) { host.export_methods(unit); });
}

void return_unit(def_unittype* root) {
  carry_out("return_unit", [&](Host& host) { host.set_root(root); });
}

void label(def_unittype* root, const char* text) {
  carry_out("label", [&](Host& host) { host.set_label(root, text); });
}

int is_not_unit(const def_unittype* unit) {
  return carry_out("is_not_unit", 1, [&](Host& host) { return host.is_unit(unit) ? 0 : 1; });
}

int error_msg(int code, const char* text, int, int) {
  carry_out("error_msg", [&](Host& host) { host.report_error(code, text); });
  return 0;
}

void kem_iconform_for_method(const char* method, const char* help, int, int) {
  carry_out("kem_iconform_for_method", [&](Host& host) { host.describe_method(method, help); });
}

void SET_INFO_FOR_METHOD(const char* method) {
  carry_out("SET_INFO_FOR_METHOD", [&](Host& host) { host.select_method(method); });
}

void INFO_FOR_INP(int input, const char* text) {
  carry_out("INFO_FOR_INP",
            [&](Host& host) { host.describe_port(Direction::kInput, input, text); });
}

void INFO_FOR_OUT(int output, const char* text) {
  carry_out("INFO_FOR_OUT",
            [&](Host& host) { host.describe_port(Direction::kOutput, output, text); });
}

char* TVAL(int field) {
  return carry_out<char*>("TVAL", nullptr, [field](Host& host) { return host.dialog_text(field); });
}

int zel_dim_of_dyn_inp(const def_unittype* unit, int input, int reserved) {
  return carry_out("zel_dim_of_dyn_inp", 0,
                   [&](Host& host) { return host.array_length(unit, input, reserved); });
}

int zel_reassign(const def_unittype* unit, int output, int reserved, int length, void* array) {
  return carry_out("zel_reassign", 1, [&](Host& host) {
    return host.replace_array(unit, output, reserved, length, array) ? 0 : 1;
  });
}
