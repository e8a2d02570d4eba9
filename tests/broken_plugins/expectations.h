// What is expected of each broken plug-in.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace broken_plugins {

using Lines = std::vector<std::string>;

/// What zelrun check says of a plug-in: the checks that fail, with the reason, and those
/// that are left out for it.
struct Expectation {
  std::string plugin;
  Lines failed;
  Lines skipped;
};

/// For the name of a test.
inline void PrintTo(const Expectation& expectation, std::ostream* out) {
  *out << expectation.plugin;
}

const std::vector<Expectation>& expectations();

}  // namespace broken_plugins
