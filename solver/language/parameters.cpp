#include "solver/language/parameters.h"

#include <limits>
#include <string>

#include "solver/language/language_error.h"
#include "solver/language/number.h"

namespace sdpsol {
namespace {

struct RealParameter {
  std::string_view name;
  double Parameters::*field;
};

constexpr RealParameter kRealParameters[] = {
    {"NU", &Parameters::nu},
    {"GAMMA", &Parameters::gamma},
    {"ABSTOL", &Parameters::absolute_tolerance},
    {"RELTOL", &Parameters::relative_tolerance},
    {"BIGM", &Parameters::big_m},
};

}  // namespace

void set_parameter(Parameters& parameters, std::string_view name, const Operand& operand) {
  const std::string text(name);
  for (const RealParameter& real : kRealParameters) {
    if (real.name != name) continue;
    const double value = constant_scalar(operand, text.c_str());
    if (!(value > 0)) {
      throw LanguageError(operand.span,
                          text + " must be greater than 0, this is " + number_text(value));
    }
    parameters.*real.field = value;
    return;
  }
  parameters.max_iterations =
      whole_number(operand, text.c_str(), 1, std::numeric_limits<std::int32_t>::max());
}

double get_parameter(const Parameters& parameters, std::string_view name) {
  for (const RealParameter& real : kRealParameters) {
    if (real.name == name) return parameters.*real.field;
  }
  return parameters.max_iterations;
}

}  // namespace sdpsol
