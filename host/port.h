// A port of a unit: its type, what it holds, and the record that plug-ins see.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "zel/zel.h"

namespace zelhost {

enum class PortKind {
  kFloats,        ///< a fixed number of floats
  kText,          ///< a text, or none yet
  kFloatArray,    ///< floats, any number
  kIntegerArray,  ///< 32-bit integers, any number
};

struct PortType {
  PortKind kind = PortKind::kFloats;
  /// Of kFloats: how many. 1 for the others.
  int count = 1;

  friend bool operator==(const PortType&, const PortType&) = default;
};

/// "1 float", "6 floats", "text", "float array", "integer array".
std::string to_string(PortType type);

/// What a port holds: nothing (a text nobody has set), a text, floats
/// (kFloats, kFloatArray) or integers (kIntegerArray).
using PortValue =
    std::variant<std::monostate, std::string, std::vector<float>, std::vector<std::int32_t>>;

/// One port. It stays where it is: records lead into it.
class Port {
 public:
  /// @param type count at least 1. Floats start as 0, arrays empty, a text as none.
  explicit Port(PortType type);
  ~Port() = default;
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;
  Port(Port&&) = delete;
  Port& operator=(Port&&) = delete;

  [[nodiscard]] PortType type() const { return type_; }
  [[nodiscard]] PortValue value() const;

  /// Replaces what the port holds by a copy.
  /// @throws std::invalid_argument if the value is not of the port's type. A text
  /// port takes its text back with std::monostate.
  void set(const PortValue& value);

  /// Of an array: how many elements.
  [[nodiscard]] int length() const { return length_; }

  /// Of an array: where its elements are; null where there never were any.
  [[nodiscard]] const void* array() const { return array_.data; }

  /// Of an array: takes elements made with new[] of the port's element type, and
  /// frees those from before.
  /// @param length not negative.
  void take(void* array, int length);

  /// Of a text: copies the one that the plug-in has left in the record. Nothing for the
  /// other kinds.
  void keep_text();

  /// Of a text: puts the copy that was kept last back into the record, in the place of
  /// one that may not live any more. Nothing for the other kinds.
  void restore_text();

  [[nodiscard]] zel_port* record() { return &record_; }

 private:
  void set_floats(const std::vector<float>& floats);

  PortType type_;
  std::vector<float> floats_;  // of kFloats
  // Of kText: what the element leads to, unless a method is just publishing another.
  std::optional<std::string> text_;
  // Of an array: frees the elements by their type.
  std::unique_ptr<void, void (*)(void*)> owned_;
  zel_dyn_array array_{nullptr};
  int length_ = 0;
  std::vector<zel_element> elements_;
  zel_port record_{nullptr};
};

}  // namespace zelhost
