// Grasps asked on the whole road, and answers checked by the tests' own grasp map.
#pragma once

#include <random>
#include <string>

#include "grasp/answer.h"
#include "grasp/grasp.h"

namespace grasp_asked {

/// Of examples/grasps, without its ending.
grasp::Grasp example(const std::string& name);

/// @param text as a grasp file has it.
grasp::Grasp read_text(const std::string& text);

/// The one plug-in of this process, in a folder of its own.
grasp::Answer ask(const grasp::Grasp& grasp, const grasp::Inquiry& inquiry);

/// The five questions; about the first and the last contact where contacts are chosen.
std::vector<grasp::Inquiry> all_inquiries(const grasp::Grasp& grasp);

/// Balance, cones, bounds, margins, world forces, residuals, epsilons and objective of a
/// feasible answer, each computed anew. @param what stands in front of failures.
void expect_right(const grasp::Grasp& grasp, const grasp::Answer& answer, const std::string& what);

/// Verdict, objective and force closure lie between what pyramids inside of the cones and
/// around them can do. @return whether pyramids decide the verdict.
bool expect_between_pyramids(const grasp::Grasp& grasp, const grasp::Answer& answer, int sides,
                             const std::string& what);

/// 2 to 5 contacts on an ellipsoid, with normals that lean and bounds of all kinds.
grasp::Grasp random_grasp(std::mt19937& random, int contacts);

}  // namespace grasp_asked
