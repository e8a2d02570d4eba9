// What a condition asks of its two sides.
#pragma once

namespace sdpsol {

/// The difference of the sides is above 0, at least 0, or 0.
enum class Sense { kStrict, kNonStrict, kEqual };

}  // namespace sdpsol
