// Changes of definitions that mostly leave definitions.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fuzz {

/// One change of the text in `data`, as libFuzzer asks for it: a statement that comes,
/// goes, or is said twice; a token for another of its kind; an operand that becomes an
/// expression; a definition that is drawn anew; or any change of bytes.
/// @param max_size how much room there is. @return the size of the text.
std::size_t mutate_definition(std::uint8_t* data, std::size_t size, std::size_t max_size,
                              unsigned seed);

}  // namespace fuzz
