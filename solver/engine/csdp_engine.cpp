// CSDP solves  max <C, X>, <A_k, X> = a_k, X psd  and its dual
//              min a'y, sum of y_k*A_k - C = Z psd.
// Our points are its y, our multipliers its X, with C negated and a = -objective.
//
// Two symbols of the library are replaced here, as it provides for: user_exit,
// called at every iteration, and initparams, which would otherwise read a file
// param.csdp in the working directory of whoever started us.
//
//   return code of CSDP                      what it becomes
//   0 solved                                 kConverged (or kAccepted)
//   1 primal infeasible                      kUnbounded
//   2 dual infeasible                        kInfeasible
//   3 solved to reduced accuracy             kConverged
//   4 iteration limit                        kIterationLimit
//   5.. stuck, singular, not a number        kTrouble
#include "solver/engine/csdp_engine.h"

#include <csdp/declarations.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "solver/engine/csdp_data.h"
#include "solver/engine/engine_memory.h"
#include "solver/engine/reduced.h"

namespace sdpsol {
namespace {

/// The solve that is under way, for the hooks.
struct Session {
  const ConeProgram& program;
  const CsdpPlacement& placement;
  const Limits& limits;
  const Observer& observer;
  std::vector<std::size_t> offsets = multiplier_offsets(program.cones);
  int iterations = 0;
  bool accepted = false;
  bool exploded = false;
  double first_size = 0;  ///< of the first iterate
};
Session* g_session = nullptr;  // CSDP's hooks carry no user pointer

Iterate read_iterate(const Session& session, const blockmatrix& x, const double* y) {
  Iterate iterate;
  iterate.iteration = session.iterations;
  iterate.point.assign(y + 1, y + 1 + session.program.unknowns);
  iterate.multipliers.resize(session.offsets.back());
  for (std::size_t i = 0; i < session.placement.slots.size(); ++i) {
    const auto [block, index] = session.placement.slots[i];
    double* to = &iterate.multipliers[session.offsets[i]];
    const blockrec& record = x.blocks[block];
    if (record.blockcategory == DIAG) {
      *to = record.data.vec[index];
    } else {
      const auto n = static_cast<std::size_t>(record.blocksize);
      std::copy_n(record.data.mat, n * n, to);
    }
  }
  return iterate;
}

/// On programs without an interior on either side the multipliers may jump to where
/// rounding is all that is left of them; from there the library has been seen to loop
/// for ever. Certificates, which grow too, are taken before.
bool has_exploded(Session& session, const Iterate& iterate) {
  constexpr double kGrowth = 1e11;
  double size = 0;
  for (const double x : iterate.multipliers) size = std::max(size, std::fabs(x));
  for (const double y : iterate.point) size = std::max(size, std::fabs(y));
  if (session.iterations == 1) session.first_size = size;
  return !(size <= kGrowth * session.first_size);
}

StopReason reason_of(int code, const Session& session) {
  if (session.exploded) return StopReason::kTrouble;
  if (session.accepted) return StopReason::kAccepted;
  switch (code) {
    case 0:
    case 3:
      return StopReason::kConverged;
    case 1:
      return StopReason::kUnbounded;
    case 2:
      return StopReason::kInfeasible;
    case 4:
      return StopReason::kIterationLimit;
    default:
      return StopReason::kTrouble;
  }
}

class CsdpEngine final : public Engine {
 public:
  std::string_view name() const override { return "csdp"; }

  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    if (!has_memory_) reserve_engine_memory();
    has_memory_ = true;
    return solve_reduced(program, limits, observer, solve_cones);
  }

 private:
  static Candidate solve_cones(const ConeProgram& program, const Limits& limits,
                               const Observer& observer) {
    const CsdpPlacement placement(program.cones);
    CsdpConstraints constraints(program, placement);
    CsdpConstant constant(program, placement);
    std::vector<double> a(static_cast<std::size_t>(program.unknowns) + 1, 0.0);
    for (std::size_t k = 0; k + 1 < a.size(); ++k) a[k + 1] = -program.objective[k];

    int dimension = 0;
    for (const int size : placement.sizes) dimension += std::abs(size);
    blockmatrix x{};
    blockmatrix z{};
    double* y = nullptr;
    double primal = 0;
    double dual = 0;
    initsoln(dimension, program.unknowns, constant.get(), a.data(), constraints.data(), &x, &y, &z);

    Session session{program, placement, limits, observer};
    g_session = &session;
    const int code = easy_sdp(dimension, program.unknowns, constant.get(), a.data(),
                              constraints.data(), 0.0, &x, &y, &z, &primal, &dual);
    g_session = nullptr;

    Candidate candidate;
    candidate.reason = reason_of(code, session);
    candidate.last = read_iterate(session, x, y);
    candidate.last.value = -dual;
    candidate.last.bound = -primal;
    std::free(y);  // NOLINT: allocated by the library with malloc
    free_mat(x);
    free_mat(z);
    return candidate;
  }

  bool has_memory_ = false;
};

}  // namespace

std::unique_ptr<Engine> make_csdp_engine() {
  return std::make_unique<CsdpEngine>();
}

}  // namespace sdpsol

extern "C" {

int user_exit(int /*n*/, int /*k*/, struct blockmatrix /*C*/, double* /*a*/, double dobj,
              double pobj, double /*constant_offset*/, struct constraintmatrix* /*constraints*/,
              struct blockmatrix X, double* y, struct blockmatrix /*Z*/,
              struct paramstruc /*params*/) {
  sdpsol::Session* session = sdpsol::g_session;
  if (session == nullptr) return 0;
  ++session->iterations;
  sdpsol::Iterate iterate = sdpsol::read_iterate(*session, X, y);
  iterate.value = -dobj;
  iterate.bound = -pobj;
  session->exploded = sdpsol::has_exploded(*session, iterate);
  session->accepted = session->observer && session->observer(iterate);
  return session->accepted || session->exploded ? 1 : 0;
}

// The library's own values, but for accuracy and limit, and without its small change of
// the objective (perturbobj).
void initparams(struct paramstruc* params, int* pprintlevel) {
  const sdpsol::Limits limits =
      sdpsol::g_session != nullptr ? sdpsol::g_session->limits : sdpsol::Limits{};
  *params = {.axtol = limits.accuracy,
             .atytol = limits.accuracy,
             .objtol = limits.accuracy,
             .pinftol = 1e8,
             .dinftol = 1e8,
             .maxiter = limits.max_iterations,
             .minstepfrac = 0.9,
             .maxstepfrac = 0.97,
             .minstepp = 1e-8,
             .minstepd = 1e-8,
             .usexzgap = 1,
             .tweakgap = 0,
             .affine = 0,
             .perturbobj = 0,
             .fastmode = 0};
  *pprintlevel = 0;
}

}  // extern "C"
