// The algebra of the cones: what products, inverses and steps to the border are for
// numbers, for second-order cones and for symmetric matrices alike.
//
// lambda is always a scaled point (see nt_scaling.h): its dense blocks are diagonal.
#pragma once

#include <Eigen/Core>

#include "solver/engine/cones/layout.h"

namespace sdpsol::cones {

/// The unit: 1, (1, 0, ..), the identity matrix.
Eigen::VectorXd unit(const Layout& layout);

/// a o b: a*b, (a'b, a0*b1 + b0*a1), (A*B + B*A)/2.
Eigen::VectorXd product(const Layout& layout, const Eigen::VectorXd& a, const Eigen::VectorXd& b);

/// The x with lambda o x = b.
Eigen::VectorXd quotient(const Layout& layout, const Eigen::VectorXd& b,
                         const Eigen::VectorXd& lambda);

/// The largest step with lambda + step * direction in the cones; infinite if there is none.
double largest_step(const Layout& layout, const Eigen::VectorXd& lambda,
                    const Eigen::VectorXd& direction);

/// The least "eigenvalue" of all cones: s + t * unit() is inside them for t > -least.
double least_eigenvalue(const Layout& layout, const Eigen::VectorXd& s);

}  // namespace sdpsol::cones
