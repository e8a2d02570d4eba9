// What becomes of a result text: the return, the exception and the fields, by the driver and
// by the second parser.
#pragma once

#include <stdexcept>
#include <string>

#include "unit/reference_parser.h"
#include "unit/sdpsol_wrapper.h"

namespace unit_test {

/// In place of a return, where parsing ended with an exception.
constexpr int kThrown = -2;

struct Reading {
  int code = 0;
  std::string error;  ///< what the exception says
  sdpsol_wrapper::result last;
};

template <class Parse>
Reading reading_of(const Parse& parse) {
  Reading reading;
  try {
    reading.code = parse(reading.last);
  } catch (const std::out_of_range& error) {
    reading.code = kThrown;
    reading.error = error.what();
  }
  return reading;
}

inline Reading by_driver(const std::string& text) {
  sdpsol_wrapper driver("", "", "");
  driver.resultText = text;
  Reading reading =
      reading_of([&driver](const sdpsol_wrapper::result&) { return driver.parseResult(); });
  reading.last = driver.lastResult;
  return reading;
}

inline Reading by_reference(const std::string& text) {
  return reading_of([&text](sdpsol_wrapper::result& last) { return reference_parse(text, last); });
}

}  // namespace unit_test
