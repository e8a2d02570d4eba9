// Lengths and forces in words: round steps for scales, a unit that fits.
#pragma once

#include <string>

namespace grasp::picture {

/// The largest of 1, 2 or 5 times a power of ten that is not above limit; 0 for a
/// limit that is not positive and finite.
double round_step(double limit);

/// "0.35", "12", "1200": a number that is not negative.
std::string three_digits(double value);

/// "5 mm", "2 cm", "1.25 m". @param metres positive.
std::string length_in_words(double metres);

/// Three digits, in a unit that all forces of a picture share: "4.2 N".
/// @param newtons not negative.  @param largest of the forces of the picture. What is
/// below a millionth of it is rounding, and said as 0.
std::string force_in_words(double newtons, double largest);

}  // namespace grasp::picture
