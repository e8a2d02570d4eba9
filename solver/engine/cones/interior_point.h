// The method: a primal-dual interior-point method with Nesterov-Todd scaling and
// Mehrotra's predictor and corrector, from a start outside the constraints.
//
//   maximise c'u,  s = h + G*u in K        minimise h'z,  G'*z + c = 0, z in K
//
// Every step solves, at the scaling W of (s, z) with lambda = W*z = W^-T*s,
//
//   G'*dz         = -(c + G'*z)
//   ds - G*du     = h + G*u - s
//   lambda o (W*dz + W^-T*ds) = target
//
// by elimination to the normal equations G'*W^-1*W^-T*G * du = .., twice with one
// factorisation: first towards target = -lambda o lambda (the predictor); how far that
// goes tells how much to stay away from the border, and its second-order term enters
// the target of the corrector. Point and multipliers take steps of their own lengths.
//
// Sources: Mehrotra, On the implementation of a primal-dual interior point method, 1992;
// Andersen, Roos, Terlaky, On implementing a primal-dual interior-point method for conic
// quadratic optimization, 2003; Vandenberghe, The CVXOPT linear and quadratic cone
// program solvers, 2010. Of two ways to start, from the inside of an embedding or from
// outside the constraints, this is the second: margins have an inside on both sides, so
// the certificates of an embedding are rarely needed, and steps cost less.
#pragma once

#include "solver/engine/cones/layout.h"
#include "solver/engine/cones/newton_system.h"
#include "solver/engine/engine.h"

namespace sdpsol::cones {

/// @param offsets multiplier_offsets() of the program that the layout is of.
Candidate solve_interior(const Layout& layout, NewtonSystem& system,
                         const std::vector<std::size_t>& offsets, const Limits& limits,
                         const Observer& observer);

}  // namespace sdpsol::cones
