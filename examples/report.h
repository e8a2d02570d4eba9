// Answers as text for a reader.
#pragma once

#include <string>

#include "examples/questions.h"

namespace examples {

/// The question in words, for this grasp: "Is there an internal force?".
std::string question_text(const Grasp& grasp, Question question);

/// Verdict, objective with what it means, and a table of the contact forces:
/// each component with its bounds, and of each contact with friction the share
/// |tangential| / (coefficient * normal) of its cone that is used.
std::string report(const Grasp& grasp, Question question, const Answer& answer);

/// Verdict and the coordinates found.
std::string report(const Lmi& lmi, const Answer& answer);

}  // namespace examples
