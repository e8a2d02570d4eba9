#include "solver/engine/cones/interior_point.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "solver/engine/cones/jordan.h"

namespace sdpsol::cones {
namespace {

using Eigen::VectorXd;

// The share of the way to the border that a step takes, and where the predictor gets far.
constexpr double kLeastStep = 0.95;
constexpr double kMaxStep = 0.99;
// Steps that make less of a difference, so many times one after the other, are the end.
constexpr double kProgress = 0.9;
constexpr int kMaxIdle = 4;
// What was solved once and is worse by this factor is not solved better by going on.
constexpr double kTurned = 3;
// What counts as solved where rounding ends the way.
constexpr double kAccepted = 1e-6;
// Directions that are this good certificates are taken for them.
constexpr double kCertificate = 1e-8;
// Values are told from 0 by this share of the numbers that the program is scaled to.
constexpr double kSmallValue = 1e-3;

struct Step {
  VectorXd u;
  VectorXd s_scaled;  ///< W^-T * ds
  VectorXd z_scaled;  ///< W * dz
};

class InteriorPoint {
 public:
  InteriorPoint(const Layout& layout, NewtonSystem& system, const std::vector<std::size_t>& offsets,
                const Limits& limits, const Observer& observer)
      : layout_(layout),
        system_(system),
        offsets_(offsets),
        limits_(limits),
        observer_(observer),
        unit_(unit(layout)),
        scaling_(layout),
        size_of_constants_(std::max(1.0, layout.constants.norm())),
        size_of_objective_(std::max(1.0, system.objective().norm())) {}

  Candidate run() {
    Candidate candidate;
    if (start()) candidate.reason = approach();
    // Rounding ends the way of the multipliers before that of the point.
    const bool is_at_its_end =
        candidate.reason == StopReason::kConverged || candidate.reason == StopReason::kTrouble;
    if (is_at_its_end && error() > least_error_) {
      z_ = best_multipliers_;
      measure();
    }
    candidate.last = iterate();
    return candidate;
  }

 private:
  /// The least norms of s and of z that fit the equations, moved into the cones.
  /// Source: Vandenberghe 2010, section 7.3.
  bool start() {
    u_ = VectorXd::Zero(system_.size());
    s_ = z_ = unit_;
    scaling_.set_identity();
    if (!system_.factor(scaling_)) return false;
    u_ = -system_.solve(system_.multiply_transposed(layout_.constants));
    s_ = into_the_cones(layout_.constants + system_.multiply(u_));
    z_ = into_the_cones(-system_.multiply(system_.solve(system_.objective())));
    return s_.allFinite() && z_.allFinite();
  }

  StopReason approach() {
    measure();
    for (;;) {
      if (const auto reason = reason_to_stop()) return *reason;
      if (!advance()) return reason_at_the_end();
      ++iterations_;
      measure();
      if (observer_ && observer_(iterate())) return StopReason::kAccepted;
    }
  }

  VectorXd into_the_cones(VectorXd v) const {
    const double least = least_eigenvalue(layout_, v);
    const double wanted = std::max(1.0, v.norm());
    if (!(least > 0.1 * wanted)) v += (wanted - least) * unit_;
    return v;
  }

  void measure() {
    primal_residual_ = layout_.constants + system_.multiply(u_) - s_;
    const VectorXd forces = system_.multiply_transposed(z_);
    dual_residual_ = -system_.objective() - forces;
    gap_ = s_.dot(z_);
    value_ = system_.objective().dot(u_);
    bound_ = layout_.constants.dot(z_);
    size_of_forces_ = forces.norm();
  }

  Iterate iterate() const {
    Iterate iterate;
    const VectorXd point = system_.point(u_);
    iterate.point.assign(point.begin(), point.end());
    iterate.multipliers = layout_.matrices(z_, offsets_);
    iterate.value = value_;
    iterate.bound = bound_;
    iterate.iteration = iterations_;
    return iterate;
  }

  double primal_error() const { return primal_residual_.norm() / size_of_constants_; }
  double dual_error() const { return dual_residual_.norm() / size_of_objective_; }
  double relative_gap() const { return gap_ / std::max(std::fabs(value_), kSmallValue); }
  /// How far G'*z = 0 is from being so, while h'z < 0: together a proof that there is no point.
  double contradiction_error() const { return bound_ < 0 ? size_of_forces_ / -bound_ : HUGE_VAL; }
  /// How far G*u is from the cones, while c'u > 0: together there is no end of better points.
  double ray_error() const {
    return value_ > 0 ? (s_ - system_.multiply(u_)).norm() / value_ : HUGE_VAL;
  }
  double error() const { return std::max({primal_error(), dual_error(), relative_gap()}); }

  /// Nothing where it is worth going on; remembers how near the end has been.
  std::optional<StopReason> reason_to_stop() {
    if (error() <= limits_.accuracy) return StopReason::kConverged;
    const double without_point = contradiction_error();
    const double without_end = ray_error();
    if (without_point <= kCertificate) return StopReason::kInfeasible;
    if (without_end <= kCertificate) return StopReason::kUnbounded;
    if (iterations_ >= limits_.max_iterations) return StopReason::kIterationLimit;
    const double nearest = std::min({error(), without_point, without_end});
    idle_ = nearest < kProgress * nearest_end_ ? 0 : idle_ + 1;
    nearest_end_ = std::min(nearest_end_, nearest);
    const bool has_turned = least_error_ <= kAccepted && error() > kTurned * least_error_;
    if (error() < least_error_) {
      least_error_ = error();
      best_multipliers_ = z_;
    }
    if (has_turned || idle_ >= kMaxIdle) return reason_at_the_end();
    return std::nullopt;
  }

  StopReason reason_at_the_end() const {
    return least_error_ <= kAccepted ? StopReason::kConverged : StopReason::kTrouble;
  }

  /// @param target lambda o (W*dz + W^-T*ds), divided by lambda.
  /// @param precise where the step is taken; how far another goes needs fewer digits.
  Step solve(const VectorXd& target, bool precise) const {
    VectorXd residual = primal_residual_;
    scaling_.unscale_transposed(residual);
    VectorXd right = target - residual;
    scaling_.unscale(right);
    Step step;
    const VectorXd forces = system_.multiply_transposed(right) - dual_residual_;
    step.u = precise ? system_.solve(forces) : system_.solve_once(forces);
    step.s_scaled = system_.multiply(step.u) + primal_residual_;
    scaling_.unscale_transposed(step.s_scaled);
    step.z_scaled = target - step.s_scaled;
    return step;
  }

  bool advance() {
    if (!scaling_.update(s_, z_) || !system_.factor(scaling_)) return false;
    const VectorXd& lambda = scaling_.lambda();
    const Step predictor = solve(-lambda, false);
    const double s_step = std::min(1.0, largest_step(layout_, lambda, predictor.s_scaled));
    const double z_step = std::min(1.0, largest_step(layout_, lambda, predictor.z_scaled));
    const double reached =
        (lambda + s_step * predictor.s_scaled).dot(lambda + z_step * predictor.z_scaled);
    const double share = std::clamp(reached / gap_, 0.0, 1.0);
    const double centre = share * share * share * gap_ / static_cast<double>(layout_.degree);
    const VectorXd second_order = product(layout_, predictor.s_scaled, predictor.z_scaled);
    const VectorXd corrector = quotient(layout_, centre * unit_ - second_order, lambda) - lambda;
    return move(solve(corrector, true),
                kLeastStep + (kMaxStep - kLeastStep) * std::min(s_step, z_step));
  }

  bool move(const Step& step, double fraction) {
    const VectorXd& lambda = scaling_.lambda();
    if (!step.s_scaled.allFinite() || !step.z_scaled.allFinite()) return false;
    const double s_step = std::min(1.0, fraction * largest_step(layout_, lambda, step.s_scaled));
    const double z_step = std::min(1.0, fraction * largest_step(layout_, lambda, step.z_scaled));
    u_ += s_step * step.u;
    s_ = lambda + s_step * step.s_scaled;
    scaling_.scale_transposed(s_);
    z_ = lambda + z_step * step.z_scaled;
    scaling_.unscale(z_);
    return u_.allFinite() && s_.allFinite() && z_.allFinite();
  }

  const Layout& layout_;
  NewtonSystem& system_;
  const std::vector<std::size_t>& offsets_;
  const Limits& limits_;
  const Observer& observer_;
  const VectorXd unit_;
  NtScaling scaling_;
  double size_of_constants_;
  double size_of_objective_;

  VectorXd u_;
  VectorXd s_;
  VectorXd z_;
  VectorXd primal_residual_;  ///< h + G*u - s
  VectorXd dual_residual_;    ///< -(c + G'*z)
  double gap_ = 0;
  double value_ = 0;
  double bound_ = 0;
  double size_of_forces_ = 0;  ///< |G'*z|
  int iterations_ = 0;
  int idle_ = 0;
  double nearest_end_ = HUGE_VAL;  ///< the least of all that is to become 0
  double least_error_ = HUGE_VAL;
  VectorXd best_multipliers_;  ///< where the error was least
};

}  // namespace

Candidate solve_interior(const Layout& layout, NewtonSystem& system,
                         const std::vector<std::size_t>& offsets, const Limits& limits,
                         const Observer& observer) {
  return InteriorPoint(layout, system, offsets, limits, observer).run();
}

}  // namespace sdpsol::cones
