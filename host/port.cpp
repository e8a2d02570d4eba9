#include "host/port.h"

#include <algorithm>
#include <stdexcept>

namespace zelhost {
namespace {

template <class Element>
void free_array(void* array) {
  delete[] static_cast<Element*>(array);
}

template <class Element>
void* copy_of(const std::vector<Element>& values) {
  auto* const copy = new Element[values.size()]();
  std::copy(values.begin(), values.end(), copy);
  return copy;
}

template <class Element>
std::vector<Element> elements_at(const void* array, int length) {
  const auto* const first = static_cast<const Element*>(array);
  return {first, first + length};
}

template <class Wanted>
const Wanted& expect(const PortValue& value, PortType type) {
  const auto* const wanted = std::get_if<Wanted>(&value);
  if (wanted == nullptr) throw std::invalid_argument("the port takes " + to_string(type));
  return *wanted;
}

}  // namespace

std::string to_string(PortType type) {
  switch (type.kind) {
    case PortKind::kFloats:
      return std::to_string(type.count) + (type.count == 1 ? " float" : " floats");
    case PortKind::kText:
      return "text";
    case PortKind::kFloatArray:
      return "float array";
    case PortKind::kIntegerArray:
      return "integer array";
  }
  return {};
}

Port::Port(PortType type)
    : type_(type),
      owned_(nullptr,
             type.kind == PortKind::kIntegerArray ? free_array<std::int32_t> : free_array<float>) {
  switch (type.kind) {
    case PortKind::kFloats:
      floats_.resize(static_cast<std::size_t>(type.count));
      for (float& number : floats_) elements_.push_back({&number});
      break;
    case PortKind::kText:
      elements_.push_back({nullptr});
      break;
    case PortKind::kFloatArray:
    case PortKind::kIntegerArray:
      elements_.push_back({&array_});
      break;
  }
  record_.elements = elements_.data();
}

PortValue Port::value() const {
  switch (type_.kind) {
    case PortKind::kFloats:
      return floats_;
    case PortKind::kText:
      if (elements_.front().value == nullptr) return {};
      return std::string(static_cast<const char*>(elements_.front().value));
    case PortKind::kFloatArray:
      return elements_at<float>(array_.data, length_);
    case PortKind::kIntegerArray:
      return elements_at<std::int32_t>(array_.data, length_);
  }
  return {};
}

void Port::set(const PortValue& value) {
  switch (type_.kind) {
    case PortKind::kFloats:
      set_floats(expect<std::vector<float>>(value, type_));
      break;
    case PortKind::kText:
      if (std::holds_alternative<std::monostate>(value))
        text_.reset();
      else
        text_ = expect<std::string>(value, type_);
      restore_text();
      break;
    case PortKind::kFloatArray: {
      const auto& floats = expect<std::vector<float>>(value, type_);
      take(copy_of(floats), static_cast<int>(floats.size()));
      break;
    }
    case PortKind::kIntegerArray: {
      const auto& integers = expect<std::vector<std::int32_t>>(value, type_);
      take(copy_of(integers), static_cast<int>(integers.size()));
      break;
    }
  }
}

void Port::set_floats(const std::vector<float>& floats) {
  if (floats.size() != floats_.size()) {
    throw std::invalid_argument("the port takes " + to_string(type_));
  }
  // In place: the record's elements lead to these.
  std::copy(floats.begin(), floats.end(), floats_.begin());
}

void Port::keep_text() {
  if (type_.kind != PortKind::kText) return;
  const auto* const text = static_cast<const char*>(elements_.front().value);
  if (text == nullptr)
    text_.reset();
  else if (!text_ || text != text_->data())
    text_ = std::string(text);
  restore_text();
}

void Port::restore_text() {
  if (type_.kind == PortKind::kText) elements_.front().value = text_ ? text_->data() : nullptr;
}

void Port::take(void* array, int length) {
  owned_.reset(array);
  array_.data = array;
  length_ = length;
}

}  // namespace zelhost
