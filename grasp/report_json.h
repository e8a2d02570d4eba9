// An answer for programs.
#pragma once

#include <string>

#include "grasp/answer.h"
#include "host/json_reader.h"

namespace grasp {

/// docs/grasps.md describes it, docs/grasp-answer.schema.json is its schema.
/// @param times whether times belong into it: with them no two runs write the same.
zelhost::Json to_json(const Grasp& grasp, const Answer& answer, bool times);

/// The same as a text that people can read too: a line for each member and each contact.
std::string to_text(const zelhost::Json& answer);

}  // namespace grasp
