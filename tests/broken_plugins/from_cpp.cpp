#include "tests/broken_plugins/from_cpp.h"

#include <stdexcept>

float* new_floats(int length) {
  return new float[static_cast<std::size_t>(length)]();
}

std::int32_t* new_integers(int length) {
  return new std::int32_t[static_cast<std::size_t>(length)]();
}

void throw_error(const char* what) {
  throw std::runtime_error(what);
}

void throw_number() {
  throw 7;
}
