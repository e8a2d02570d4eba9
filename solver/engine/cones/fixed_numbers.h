// Numbers that have nothing to do with each other, and are the same in every run.
#pragma once

#include <cmath>
#include <cstdint>

namespace sdpsol::cones {

/// Between 1/2 and 3/2. Method: SplitMix64 (Steele, Lea, Flood 2014).
inline double fixed_number(std::int64_t index) {
  auto x = static_cast<std::uint64_t>(index) * 0x9E3779B97F4A7C15ULL + 0x2545F4914F6CDD1DULL;
  x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  x = (x ^ (x >> 27U)) * 0x94D049BB133111EBULL;
  return 0.5 + std::ldexp(static_cast<double>(x >> 11U), -53);
}

}  // namespace sdpsol::cones
