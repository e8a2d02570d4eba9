// How big a definition may be. Generous against anything that can be solved,
// small enough that a slip ("eye(1000000)") or a malicious text is an error
// message and not a machine out of memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sdpsol {

/// Bytes of a text; positions in it are 32-bit.
inline constexpr std::size_t kMaxTextBytes = std::size_t{1} << 30U;
/// Brackets, parentheses and function calls inside each other.
inline constexpr int kMaxNesting = 200;
/// Rows or columns of a matrix.
inline constexpr std::int32_t kMaxDimension = 10'000;
/// Entries that a function or a declaration writes out by itself.
inline constexpr std::int64_t kMaxGeneratedEntries = 1'000'000;
/// Terms of one value.
inline constexpr std::size_t kMaxTerms = 10'000'000;
/// Terms of all names and conditions together.
inline constexpr std::size_t kMaxHeldTerms = 25'000'000;
/// Multiplications that one product of two matrices may take.
inline constexpr std::int64_t kMaxProductWork = 200'000'000;

}  // namespace sdpsol
