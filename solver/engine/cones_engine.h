// The engine for what grasps are made of: linear rows, second-order cones and small
// dense blocks. Tiny problems take it microseconds; where the unknowns only move a few
// forces for each cone, as in a grasp, what it takes grows linearly with the contacts.
#pragma once

#include <memory>

#include "solver/engine/engine.h"

namespace sdpsol {

/// Programs that it is not expected to be fast for end with kUnsuited: those with larger
/// dense blocks than kLargestDenseBlock or more of them than kMaxDenseBlocks, with any
/// matrix larger than kLargestMatrix, and those with many unknowns that act on the
/// cones in no way that it could make use of: because they are sparse (more than
/// kMaxSparseUnknowns, less than the share kSparse of the coefficients) or too many
/// (coordinates * unknowns^2 beyond kMaxWork).
std::unique_ptr<Engine> make_cones_engine();

inline constexpr std::int32_t kLargestDenseBlock = 4;
inline constexpr int kMaxDenseBlocks = 16;
inline constexpr std::int32_t kLargestMatrix = 64;
inline constexpr double kMaxSparseUnknowns = 150;
inline constexpr double kSparse = 0.25;
inline constexpr double kMaxWork = 1e9;

}  // namespace sdpsol
