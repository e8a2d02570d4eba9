#include "solver/exchange/exported_programs.h"

#include <cstddef>
#include <utility>

#include "solver/decide/presolve.h"
#include "solver/decide/program.h"
#include "solver/decide/scaling.h"
#include "solver/language/number.h"

namespace sdpsol {
namespace {

constexpr const char* kForm =
    "minimise c'x where x1*F1 + ... + xm*Fm - F0 is positive semidefinite\n";

}  // namespace

ConeProgram cone_program_of(const Problem& problem) {
  ConeProgram program;
  program.unknowns = problem.unknowns;
  program.objective.assign(static_cast<std::size_t>(problem.unknowns), 0.0);
  if (problem.objective) program.objective = problem.objective->cost;
  for (const Block& block : problem.blocks) {
    ConeProgram::Cone cone{block.size, {}};
    for (const AffineTerm& t : block.terms) {
      if (t.value == 0) continue;
      cone.coefficients.push_back({t.row, t.column,
                                   t.unknown == kConstant ? ConeProgram::kConstantTerm : t.unknown,
                                   t.value});
    }
    auto& list = block.sense == Sense::kEqual ? program.equations : program.cones;
    list.push_back(std::move(cone));
  }
  return program;
}

ConeProgram margin_program_of(const Problem& problem) {
  const Selection selection = select_conditions(problem);
  const Scaling scaling = scale_by_constants(problem);
  return Program(problem, selection, scaling, Goal::kMargin).cones();
}

std::string cone_program_comment(const Problem& problem) {
  std::string text = kForm;
  text += "xk is unknown k of the definition; strict inequalities are written as non-strict\n";
  if (!problem.objective) {
    text += "no objective: c is 0\n";
  } else if (problem.objective->constant != 0) {
    text += "the objective, as a maximisation, is " + number_text(problem.objective->constant) +
            " - c'x\n";
  }
  if (problem.boxed) text += "left out: |xk| <= " + number_text(problem.big_m) + " for every k\n";
  return text;
}

std::string margin_program_comment(const Problem& problem) {
  std::string text = kForm;
  text +=
      "the margin problem: the last unknown is t, at most 1 and as large as possible, and\n"
      "every inequality, in units of its own size, is left with room t; the other unknowns\n"
      "are those that conditions hold, in their order, in units of their own sizes\n"
      "left out: conditions between constants, true or false\n";
  if (problem.boxed) {
    text += "left out: |v| <= " + number_text(problem.big_m) + " for every unknown v\n";
  }
  return text;
}

}  // namespace sdpsol
