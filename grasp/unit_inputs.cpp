#include "grasp/unit_inputs.h"

namespace grasp {

UnitInputs unit_inputs(const Grasp& grasp, const Eigen::MatrixXd& base) {
  UnitInputs inputs;
  inputs.base.reserve(static_cast<std::size_t>(base.size()));
  for (const auto& row : base.rowwise())
    for (const double entry : row) inputs.base.push_back(static_cast<float>(entry));
  for (const Contact& contact : grasp.contacts) {
    inputs.types.push_back(static_cast<std::int32_t>(contact.components()));
    inputs.friction.push_back(static_cast<float>(contact.friction));
    for (const Bounds& bounds : contact.bounds) {
      inputs.bounds.push_back(static_cast<float>(bounds.lower));
      inputs.bounds.push_back(static_cast<float>(bounds.upper));
    }
  }
  return inputs;
}

}  // namespace grasp
