// Numbers as people and programs read them.
#pragma once

#include <cstddef>
#include <string>

namespace sdpsol {

/// The shortest text that reads back as the same double; "0" for both zeros.
std::string shortest(double value);

/// At most so many significant digits.
std::string rounded(double value, int digits);

/// "1 row", "2 rows".
std::string count_text(std::size_t number, const char* one, const char* many);

}  // namespace sdpsol
