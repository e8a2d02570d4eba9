// What multipliers prove about a problem.
#pragma once

#include <vector>

#include "solver/check/balance.h"

namespace sdpsol {

/// From the strongest claim to none.
enum class Disproof {
  kInfeasible,  ///< no point at all
  kEmptyBox,    ///< no point with every |v_k| <= big_m
  kBorderline,  ///< no point with more room than kRoom
  kNone,
};

/// The strongest claim that these multipliers prove.
///
/// kInfeasible: exactly balanced multipliers exist inside the cones, and the
/// weighted sum of the conditions then reads "constant > 0" with a constant
/// provably below 0 (by more than the rounding of reading, 2^-48 of the weighed
/// magnitudes), or "0 > 0" with a strict inequality taking part. Unknowns whose
/// exact balance is not proven, but which cancel to 1e-6 of their terms, may be
/// charged to the box, for at most 1e-6 of the constant.
/// kEmptyBox: the constant stays below 0 with every rest charged to the box.
/// kBorderline: every rest, and the constant, stays below kRoom times the
/// diagonal magnitudes that the multipliers weigh; a point with more room would
/// make the weighted sum positive and not positive at once.
/// Cost: unknowns^2 * (entries of the multipliers).
Disproof disprove(const Problem& problem, const std::vector<Multiplier>& multipliers);

/// The weights that the claim of disprove() rests on, which its own correction has moved
/// onto the balance: the unknowns cancel in their sum but for rounding. None without a
/// claim. To be shown to people; the proof is that of disprove().
std::vector<Multiplier> balanced_multipliers(const Problem& problem,
                                             const std::vector<Multiplier>& multipliers);

/// An upper bound on the objective over all points, in a boxed problem those with
/// |v_k| <= big_m, proven by these multipliers; infinite if they prove none.
/// @param charged unknowns whose rest is meant to be charged to the box, which is
///        what holds them; the multipliers are moved onto the balance of the others.
/// Requires problem.objective.
double proven_bound(const Problem& problem, const std::vector<Multiplier>& multipliers,
                    const std::vector<std::int32_t>& charged = {});

}  // namespace sdpsol
