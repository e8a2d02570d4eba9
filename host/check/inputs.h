// What methods are fired with: values that every method has to bear.
#pragma once

#include <array>
#include <string_view>

#include "host/unit.h"

namespace zelcheck {

enum class Inputs {
  kUnset,
  kZero,
  kOrdinary,
  kUneven,
  kLong,
  kHuge,
  kNegative,
  kNan,
  kInfinite,
  kEmptyText,
  kLongText,
  kStrangeText,
};

inline constexpr std::array kAllInputs = {
    Inputs::kUnset,    Inputs::kZero,      Inputs::kOrdinary, Inputs::kUneven,
    Inputs::kLong,     Inputs::kHuge,      Inputs::kNegative, Inputs::kNan,
    Inputs::kInfinite, Inputs::kEmptyText, Inputs::kLongText, Inputs::kStrangeText};

/// "NaN inputs": behind "METHOD with".
std::string_view name_of(Inputs inputs);

/// Whether the unit is to be fired with these: each is with ordinary ones, also if
/// it has no inputs; with others where they differ from those.
bool concern(Inputs inputs, const zelhost::Unit& unit);

/// Fills all inputs of the unit. Arrays are short, except for kLong, so that a
/// method which hands them to a solver is done soon.
void fill(zelhost::Unit& unit, Inputs inputs);

}  // namespace zelcheck
