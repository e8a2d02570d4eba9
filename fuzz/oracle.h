// How fuzzers say that what they hold something to does not hold.
#pragma once

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the process, which is what the driver of a fuzzer notices: it keeps the input.
[[noreturn]] inline void finding(std::string_view what) {
  std::cerr << "finding: " << what << '\n' << std::flush;
  std::abort();
}

inline void require(bool holds, std::string_view what) {
  if (!holds) finding(what);
}

/// The same to the last bit: what is not a number equals itself, 0 and -0 differ.
inline bool same_bits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

inline std::string text_of(const std::uint8_t* data, std::size_t size) {
  // Bytes and characters are the same things.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace fuzz
