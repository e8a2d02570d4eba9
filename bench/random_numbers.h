// Numbers to write and to read.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

namespace bench {

/// Between -1 and 1, the same in every run.
inline std::vector<double> random_numbers(std::size_t count) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  std::vector<double> numbers(count);
  for (double& number : numbers) number = uniform(random);
  return numbers;
}

}  // namespace bench
