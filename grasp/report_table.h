// An answer for people.
#pragma once

#include <string>

#include "grasp/answer.h"

namespace grasp {

/// Lines of text: verdict, forces, margins, balance.
std::string to_table(const Grasp& grasp, const Answer& answer);

}  // namespace grasp
