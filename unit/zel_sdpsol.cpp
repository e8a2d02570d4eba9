// The constructor of an instance, and the methods: each moves data between the
// ports of its unit and the instance's driver, which every unit of the tree
// keeps as its user pointer.
#include "unit/zel_sdpsol.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "unit/sdpsol_result.h"
#include "unit/sdpsol_wrapper.h"

namespace {

// From ports and to ports.

sdpsol_wrapper& driver_of(const def_unittype* unit) {
  return *static_cast<sdpsol_wrapper*>(zel_user(unit));
}

int length_of(const def_unittype* unit, int input) {
  return std::max(0, zel_dim_of_dyn_inp(unit, input, 0));
}

std::vector<double> doubles_inp(const def_unittype* unit, int input) {
  const int length = length_of(unit, input);
  const float* const first = zel_floats_inp(unit, input);
  return {first, first + length};
}

std::vector<int> ints_inp(const def_unittype* unit, int input) {
  const int length = length_of(unit, input);
  const std::int32_t* const first = zel_integers_inp(unit, input);
  return {first, first + length};
}

// Truncates toward zero. What does not fit becomes the nearest number that does,
// what is no number becomes 0.
template <class Integer>
Integer truncated(float number) {
  using Limits = std::numeric_limits<Integer>;
  if (std::isnan(number)) return 0;
  const double whole = std::trunc(static_cast<double>(number));
  if (whole <= static_cast<double>(Limits::min())) return Limits::min();
  if (whole >= static_cast<double>(Limits::max())) return Limits::max();
  return static_cast<Integer>(whole);
}

// A negative number arrives as the unsigned one with the same bits.
std::uint32_t contact_number(float number) {
  return number < 0 ? static_cast<std::uint32_t>(truncated<std::int32_t>(number))
                    : truncated<std::uint32_t>(number);
}

void put(const def_unittype* unit, int output, bool value) {
  zel_set_float_out(unit, output, 0, value ? 1.0F : 0.0F);
}

void put(const def_unittype* unit, int output, double value) {
  zel_set_float_out(unit, output, 0, static_cast<float>(value));
}

// The array becomes the host's.
void put(const def_unittype* unit, int output, const std::vector<double>& values, int length) {
  float* const array = new float[static_cast<std::size_t>(length)]();
  const auto count = std::min(values.size(), static_cast<std::size_t>(length));
  std::transform(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count), array,
                 [](double value) { return static_cast<float>(value); });
  zel_reassign(unit, output, 0, length, array);
}

// What wrong dimensions leave behind: the warning, as one write, and a result
// record that says that there is none.
void refuse(sdpsol_wrapper& driver, std::string_view warning) {
  std::cerr.write(warning.data(), static_cast<std::streamsize>(warning.size()));
  std::cerr.flush();
  sdpsol_internal::reset(driver.lastResult);
}

// The methods of the group General.

int exec_set_definition(def_unittype* unit) {
  const char* const text = zel_text_inp(unit, 0);
  if (text != nullptr) driver_of(unit).definition = text;
  return 0;
}

int exec_set_params(def_unittype* unit) {
  sdpsol_wrapper::parameters p;
  p.NU = zel_float_inp(unit, 0, 0);
  p.GAMMA = zel_float_inp(unit, 0, 1);
  p.MAXITER = truncated<int>(zel_float_inp(unit, 0, 2));
  p.ABSTOL = zel_float_inp(unit, 0, 3);
  p.RELTOL = zel_float_inp(unit, 0, 4);
  p.BIGM = zel_float_inp(unit, 0, 5);
  driver_of(unit).setParameters(p);
  return 0;
}

int exec_sdpsol(def_unittype* unit) {
  const int code = driver_of(unit).run();
  zel_set_float_out(unit, 0, 0, static_cast<float>(code));
  return 0;
}

int exec_get_default_params(def_unittype* unit) {
  const sdpsol_wrapper::parameters p = driver_of(unit).getDefaultParameters();
  const double values[] = {p.NU,     p.GAMMA,  static_cast<double>(p.MAXITER),
                           p.ABSTOL, p.RELTOL, p.BIGM};
  int element = 0;
  for (const double value : values) {
    zel_set_float_out(unit, 0, element++, static_cast<float>(value));
  }
  return 0;
}

int exec_get_result(def_unittype* unit) {
  const sdpsol_wrapper::result last = driver_of(unit).lastResult;
  put(unit, 0, last.feasible);
  put(unit, 2, last.objectiveValue);
  zel_set_float_out(unit, 3, 0, static_cast<float>(last.errorCode));
  put(unit, 1, last.variableValues, last.valueCount);
  return 0;
}

// The method Is_Feasible.

using Matrices = std::vector<std::vector<std::vector<double>>>;

// Cuts the array into `count` square matrices as large as it allows. The root of
// a length beyond 2^24 may be rounded up: entries past the array's end stay 1.
Matrices square_matrices(const float* values, int length, int count) {
  const int entries = length / count;
  const auto size =
      static_cast<std::size_t>(std::sqrt(static_cast<double>(static_cast<float>(entries))));
  Matrices matrices(static_cast<std::size_t>(count), {size, std::vector<double>(size, 1.0)});
  const float* const end = values + length;
  for (auto& matrix : matrices) {
    for (auto& row : matrix) {
      for (double& entry : row) {
        if (values != end) entry = *values++;
      }
    }
  }
  return matrices;
}

int exec_is_feasible(def_unittype* unit) {
  sdpsol_wrapper& driver = driver_of(unit);
  const float wanted = zel_float_inp(unit, 0, 0);
  const int length = wanted > 0.0F ? zel_dim_of_dyn_inp(unit, 1, 0) : 0;
  const int count = truncated<int>(wanted);
  // Below 1 the number of matrices is no wrong dimension yet, but it has none.
  if (!(wanted > 0.0F) || static_cast<float>(length) < wanted || count == 0) {
    refuse(driver,
           "sdpsol warning: is_feasible could not be executed because of wrong input "
           "dimensions.\n");
    return exec_get_result(unit);
  }
  const bool strict = zel_float_inp(unit, 2, 0) != 0.0F;
  driver.isFeasible(square_matrices(zel_floats_inp(unit, 1), length, count), strict);
  return exec_get_result(unit);
}

// IntForce: each asks its question, or refuses it, and publishes what the
// result record says then.

struct Grasp {
  std::vector<double> base;
  std::vector<int> types;
  std::vector<double> friction;
  std::vector<double> bounds;
};

bool has_grasp(const def_unittype* unit) {
  for (int input = 0; input < 4; ++input) {
    if (zel_dim_of_dyn_inp(unit, input, 0) <= 0) return false;
  }
  return true;
}

// In the order of the ports.
Grasp grasp_of(const def_unittype* unit) {
  Grasp grasp;
  grasp.base = doubles_inp(unit, 0);
  grasp.friction = doubles_inp(unit, 1);
  grasp.bounds = doubles_inp(unit, 2);
  grasp.types = ints_inp(unit, 3);
  return grasp;
}

void put_margin(const def_unittype* unit, const sdpsol_wrapper& driver) {
  put(unit, 0, driver.lastResult.feasible);
  put(unit, 1, driver.lastResult.objectiveValue);
}

// One element per force bound: the first are the contacts' margins, the rest 0.
void put_epsilons(const def_unittype* unit, const std::vector<double>& epsilons) {
  put(unit, 2, epsilons, length_of(unit, 2));
}

int exec_internal_force(def_unittype* unit) {
  sdpsol_wrapper& driver = driver_of(unit);
  if (has_grasp(unit)) {
    const Grasp grasp = grasp_of(unit);
    driver.internalForceExists(grasp.base, grasp.types, grasp.friction, grasp.bounds);
  } else {
    refuse(driver,
           "sdpsol warning: exec_internal_force could not be executed because of wrong input "
           "dimensions.\n");
  }
  put(unit, 0, driver.lastResult.feasible);
  return 0;
}

int exec_maximize_individual(def_unittype* unit) {
  sdpsol_wrapper& driver = driver_of(unit);
  if (has_grasp(unit)) {
    const Grasp grasp = grasp_of(unit);
    driver.internalForceMaximizeIndividual(grasp.base, grasp.types, grasp.friction, grasp.bounds,
                                           ints_inp(unit, 4));
  } else {
    refuse(driver,
           "sdpsol warning: exec_maximize_individual could not be executed because of wrong "
           "input dimensions.\n");
  }
  put_margin(unit, driver);
  return 0;
}

int exec_maximize_point_contact(def_unittype* unit) {
  sdpsol_wrapper& driver = driver_of(unit);
  if (has_grasp(unit)) {
    const Grasp grasp = grasp_of(unit);
    driver.internalForceMaximizePointContact(grasp.base, grasp.types, grasp.friction, grasp.bounds,
                                             contact_number(zel_float_inp(unit, 4, 0)));
  } else {
    refuse(driver,
           "sdpsol warning: exec_maximize_point_contacts could not be executed because of wrong "
           "input dimensions.\n");
  }
  put_margin(unit, driver);
  return 0;
}

int exec_maximize_friction_contacts(def_unittype* unit) {
  sdpsol_wrapper& driver = driver_of(unit);
  if (!has_grasp(unit)) {
    refuse(driver,
           "sdpsol warning: exec_maximize_friction_contacts could not be executed because of "
           "wrong input dimensions.\n");
    put_margin(unit, driver);
    zel_reassign(unit, 2, 0, 0, nullptr);
    return 0;
  }
  const Grasp grasp = grasp_of(unit);
  std::vector<double> epsilons(grasp.types.size(), 0.0);
  driver.internalForceMaximizeFrictionContacts(grasp.base, grasp.types, grasp.friction,
                                               grasp.bounds, &epsilons);
  put_margin(unit, driver);
  put_epsilons(unit, epsilons);
  return 0;
}

int exec_maximize_all(def_unittype* unit) {
  sdpsol_wrapper& driver = driver_of(unit);
  if (!has_grasp(unit)) {
    refuse(driver,
           "sdpsol warning: exec_maximize_all could not be executed because of wrong input "
           "dimensions.\n");
    put_margin(unit, driver);
    zel_reassign(unit, 2, 0, 0, nullptr);
    return 0;
  }
  const Grasp grasp = grasp_of(unit);
  std::vector<double> epsilons(grasp.types.size(), 0.0);
  driver.internalForceMaximizeAll(grasp.base, grasp.types, grasp.friction, grasp.bounds, &epsilons);
  put_margin(unit, driver);
  put_epsilons(unit, epsilons);
  return 0;
}

// The tree of units.

std::string text_or_empty(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

// The host may make no unit; the tree is built on without it.
void share_driver(def_unittype* unit) {
  if (unit != nullptr) zel_set_user(unit, zel_user(zel_parent(unit)));
}

def_unittype* add_group(const char* name, def_unittype* root) {
  def_unittype* const group = primitive_unit(TAG_END, root);
  zel_name_unit(name, group);
  share_driver(group);
  zel_indicate_export_of_methods(group);
  return group;
}

void make_method(const char* name, zel_method* method, def_unittype* unit) {
  zel_name_unit(name, unit);
  share_driver(unit);
  if (unit != nullptr) zel_set_method(unit, method);
}

void add_general(def_unittype* root) {
  def_unittype* const general = add_group("General", root);
  make_method("Set_Definition", exec_set_definition,
              primitive_unit(TAG_INP, TAG_STRING, 1, TAG_END, general));
  make_method("Set_Params", exec_set_params,
              primitive_unit(TAG_INP, TAG_FLOAT, 6, TAG_END, general));
  make_method("Run_Sdpsol", exec_sdpsol, primitive_unit(TAG_OUT, TAG_FLOAT, 1, TAG_END, general));
  make_method("Get_Default_Params", exec_get_default_params,
              primitive_unit(TAG_OUT, TAG_FLOAT, 6, TAG_END, general));
  make_method("Get_Result", exec_get_result,
              primitive_unit(TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_DYN, "F", TAG_OUT, TAG_FLOAT, 1,
                             TAG_OUT, TAG_FLOAT, 1, TAG_END, general));
}

void add_is_feasible(def_unittype* root) {
  make_method("Is_Feasible", exec_is_feasible,
              primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_INP, TAG_DYN, "F", TAG_INP, TAG_FLOAT, 1,
                             TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_DYN, "F", TAG_OUT, TAG_FLOAT, 1,
                             TAG_OUT, TAG_FLOAT, 1, TAG_END, root));
}

void add_intforce(def_unittype* root) {
  def_unittype* const intforce = add_group("IntForce", root);
  make_method("Exists", exec_internal_force,
              primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F",
                             TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1, TAG_END, intforce));
  make_method("Maximize_Individual", exec_maximize_individual,
              primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F",
                             TAG_INP, TAG_DYN, "I", TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1,
                             TAG_OUT, TAG_FLOAT, 1, TAG_END, intforce));
  make_method("Maximize_PointCont", exec_maximize_point_contact,
              primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F",
                             TAG_INP, TAG_DYN, "I", TAG_INP, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1,
                             TAG_OUT, TAG_FLOAT, 1, TAG_END, intforce));
  make_method("Maximize_FrictConts", exec_maximize_friction_contacts,
              primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F",
                             TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1,
                             TAG_OUT, TAG_DYN, "F", TAG_END, intforce));
  make_method("Maximize_All", exec_maximize_all,
              primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F",
                             TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1,
                             TAG_OUT, TAG_DYN, "F", TAG_END, intforce));
}

}  // namespace

def_unittype* sdpsol(def_unittype* parent, char* command, char* definitionFileName,
                     char* resultFileName) {
  auto driver = std::make_unique<sdpsol_wrapper>(
      text_or_empty(command), text_or_empty(definitionFileName), text_or_empty(resultFileName));
  if (is_not_unit(parent) != 0) {
    error_msg(2, "sdpsol", 1, 0);
    return nullptr;
  }
  def_unittype* const root = primitive_unit(TAG_END, parent);
  if (root == nullptr) {
    error_msg(30, "sdpsol", 1, 0);
    return nullptr;
  }
  // From here on it lives as long as the process.
  zel_set_user(root, driver.release());
  zel_indicate_export_of_methods(root);
  return_unit(root);
  add_general(root);
  add_is_feasible(root);
  add_intforce(root);
  label(root, "sdpsol");
  return root;
}
