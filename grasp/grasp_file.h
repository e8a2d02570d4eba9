// Grasps as JSON, which people write: every error names the contact and the field.
#pragma once

#include "grasp/grasp.h"
#include "host/json_reader.h"

namespace grasp {

/// What users are asked for is in docs/grasps.md.
/// @throws zelhost::JsonError for what is no grasp.
Grasp read_grasp(const zelhost::JsonNode& node);

}  // namespace grasp
