#include "tests/engines/integer_problems.h"

#include <Eigen/Core>
#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tests/engines/exact_truth.h"

namespace sdpsol::testing {
namespace {

using Matrix = Eigen::MatrixXd;
using Coefficients = std::vector<Matrix>;  ///< F_0 and F_1, F_2, ...

/// A problem while something is planted in it.
struct Frame {
  struct Part {
    Sense sense = Sense::kStrict;
    Coefficients f;
    Matrix weight;             ///< 0 x 0: none
    bool is_variable = false;  ///< a matrix of unknowns: no other coefficients may be added
  };
  int unknowns = 0;
  std::vector<Part> parts;
  std::vector<double> point;
};

class Drawing {
 public:
  explicit Drawing(std::mt19937& random) : random_(random) {}

  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  bool chance(int percent) { return uniform(1, 100) <= percent; }

  Matrix symmetric(Eigen::Index size) {
    Matrix m = Matrix::NullaryExpr(size, size, [&] { return uniform(-3, 3); });
    m.triangularView<Eigen::StrictlyLower>() = m.transpose();
    return m;
  }

  /// Lower triangular with ones on the diagonal: its inverse is as whole as it is.
  Matrix unit_triangle(Eigen::Index size) {
    Matrix m = Matrix::Identity(size, size);
    for (Eigen::Index i = 0; i < size; ++i) {
      for (Eigen::Index j = 0; j < i; ++j) m(i, j) = uniform(-1, 1);
    }
    return m;
  }

  Matrix definite(Eigen::Index size) {
    const Matrix root = unit_triangle(size);
    return root * root.transpose();
  }

  /// Blocks of sizes 1 to 4, now and then a matrix variable first, up to two equations.
  Frame frame(bool all_strict = false) {
    Frame frame;
    const Eigen::Index matrix = chance(30) ? uniform(2, 3) : 0;
    const auto entries = static_cast<int>(matrix * (matrix + 1) / 2);
    frame.unknowns = entries + uniform(entries > 0 ? 0 : 1, entries > 0 ? 2 : 5);
    for (int k = 0; k < frame.unknowns; ++k) frame.point.push_back(uniform(-3, 3));
    const auto sense = [&] {
      return all_strict || chance(60) ? Sense::kStrict : Sense::kNonStrict;
    };
    if (matrix > 0) frame.parts.push_back({sense(), unknown_matrix(frame, matrix), {}, true});
    const int blocks = uniform(1, 3);
    for (int b = 0; b < blocks; ++b) {
      const Eigen::Index size = chance(40) ? 1 : uniform(2, 4);
      frame.parts.push_back({sense(), coefficients(frame, size), {}});
    }
    if (frame.unknowns > 2) {
      const int equations = std::max(0, uniform(-2, 2));
      for (int e = 0; e < equations; ++e) {
        frame.parts.push_back({Sense::kEqual, coefficients(frame, 1), {}});
      }
    }
    return frame;
  }

  Coefficients coefficients(const Frame& frame, Eigen::Index size) {
    const int density = chance(50) ? 100 : 60;
    Coefficients f;
    for (int k = 0; k <= frame.unknowns; ++k) {
      f.push_back(chance(density) ? symmetric(size) : Matrix(Matrix::Zero(size, size)));
    }
    return f;
  }

  /// The first unknowns as a matrix.
  static Coefficients unknown_matrix(const Frame& frame, Eigen::Index size) {
    Coefficients f(static_cast<std::size_t>(frame.unknowns) + 1, Matrix::Zero(size, size));
    std::size_t k = 1;
    for (Eigen::Index i = 0; i < size; ++i) {
      for (Eigen::Index j = i; j < size; ++j, ++k) f[k](i, j) = f[k](j, i) = 1;
    }
    return f;
  }

  /// Another unknown, which helps every inequality and is in no equation.
  void add_helper(Frame& frame) {
    ++frame.unknowns;
    frame.point.push_back(uniform(-3, 3));
    for (Frame::Part& part : frame.parts) {
      const Eigen::Index n = part.f[0].rows();
      part.f.push_back(part.sense == Sense::kEqual ? Matrix(Matrix::Zero(n, n)) : definite(n));
    }
  }

 private:
  std::mt19937& random_;
};

/// Sets the constants so that every part has the value at the frame's point.
void set_value(Frame::Part& part, const std::vector<double>& point, const Matrix& value) {
  part.f[0] = value;
  for (std::size_t k = 0; k < point.size(); ++k) part.f[0] -= point[k] * part.f[k + 1];
}

Problem problem_of(const Frame& frame) {
  Problem problem;
  problem.unknowns = frame.unknowns;
  for (const Frame::Part& part : frame.parts) {
    Block block{static_cast<std::int32_t>(part.f[0].rows()),
                part.sense,
                static_cast<std::int32_t>(problem.blocks.size()),
                {}};
    for (std::size_t k = 0; k < part.f.size(); ++k) {
      for (std::int32_t i = 0; i < block.size; ++i) {
        for (std::int32_t j = i; j < block.size; ++j) {
          const double value = part.f[k](i, j);
          const auto unknown = static_cast<std::int32_t>(k) + kConstant;
          if (value != 0) block.terms.push_back({i, j, unknown, value, std::fabs(value)});
        }
      }
    }
    problem.blocks.push_back(std::move(block));
  }
  return problem;
}

std::vector<ExactWeight> weights_of(const Frame& frame) {
  std::vector<ExactWeight> weights;
  for (std::size_t b = 0; b < frame.parts.size(); ++b) {
    const Matrix& y = frame.parts[b].weight;
    if (y.size() == 0 || y.isZero(0)) continue;
    ExactWeight& weight =
        weights.emplace_back(ExactWeight{b, RationalMatrix(static_cast<std::int32_t>(y.rows()))});
    for (Eigen::Index i = 0; i < y.rows(); ++i) {
      for (Eigen::Index j = i; j < y.rows(); ++j) {
        weight.weight.at(static_cast<std::size_t>(i), static_cast<std::size_t>(j)) = y(i, j);
      }
    }
  }
  return weights;
}

/// What changes no truth: a condition again, perhaps in other units; one between
/// constants that holds; an unknown that occurs nowhere.
void add_idle(Frame& frame, Drawing& draw) {
  if (draw.chance(25)) {
    const auto count = static_cast<int>(frame.parts.size());
    Frame::Part again = frame.parts[static_cast<std::size_t>(draw.uniform(0, count - 1))];
    again.weight.resize(0, 0);
    const double unit = std::ldexp(1.0, draw.chance(50) ? 0 : draw.uniform(-20, 20));
    for (Matrix& m : again.f) m *= unit;
    frame.parts.push_back(std::move(again));
  }
  if (draw.chance(25)) {
    const Eigen::Index size = draw.uniform(1, 2);
    Coefficients f(static_cast<std::size_t>(frame.unknowns) + 1, Matrix::Zero(size, size));
    const bool empty = draw.chance(30);
    if (!empty) f[0] = draw.definite(size);
    frame.parts.push_back({empty || draw.chance(50) ? Sense::kNonStrict : Sense::kStrict, f, {}});
  }
  if (draw.chance(15)) {
    ++frame.unknowns;
    frame.point.push_back(0);
    for (Frame::Part& part : frame.parts) {
      part.f.push_back(Matrix::Zero(part.f[0].rows(), part.f[0].cols()));
    }
  }
}

/// What is planted must be there: everything is held against rational arithmetic.
void require(bool holds, const char* what) {
  if (!holds) throw std::logic_error(what);
}

EngineProblem with_point(const Frame& frame, bool strictly) {
  EngineProblem drawn{.problem = problem_of(frame), .truth = Truth::kFeasible};
  drawn.point = frame.point;
  const RationalPoint point = rational(frame.point);
  require(satisfies(drawn.problem, point), "the planted point satisfies the problem");
  drawn.has_room = strictly && satisfies(drawn.problem, point, Rational(kPlantedRoom));
  return drawn;
}

EngineProblem with_contradiction(const Frame& frame, bool inside) {
  EngineProblem drawn{
      .problem = problem_of(frame), .truth = Truth::kInfeasible, .has_room = inside};
  drawn.weights = weights_of(frame);
  require(contradict(drawn.problem, drawn.weights), "the planted weights contradict");
  return drawn;
}

/// Adds the objective that the weights bound.
void add_objective(EngineProblem& drawn, const Frame& frame, const std::vector<double>& best,
                   double constant) {
  LinearObjective& objective = drawn.problem.objective.emplace();
  objective.constant = constant;
  objective.constant_magnitude = std::fabs(constant);
  drawn.weights = weights_of(frame);
  const std::vector<Rational> sums = weighed_sums(drawn.problem, drawn.weights);
  for (std::size_t k = 1; k < sums.size(); ++k) {
    objective.cost.push_back(Rational(-sums[k]).get_d());
  }
  const Rational value = objective_of(drawn.problem, rational(best));
  require(bound_the_objective(drawn.problem, drawn.weights, value), "the optimum is planted");
  drawn.optimum = drawn.reached = drawn.limit = value.get_d();
}

void plant_point(Frame& frame, Drawing& draw) {
  for (Frame::Part& part : frame.parts) {
    const Eigen::Index n = part.f[0].rows();
    Matrix value = part.sense == Sense::kEqual ? Matrix(Matrix::Zero(1, 1)) : draw.definite(n);
    if (part.is_variable) {
      // The point is the value: the unknowns are its entries.
      std::size_t k = 0;
      for (Eigen::Index i = 0; i < n; ++i) {
        for (Eigen::Index j = i; j < n; ++j) frame.point[k++] = value(i, j);
      }
    }
    set_value(part, frame.point, value);
  }
}

/// Weights everywhere that cancel but for `constant`: one entry of a part takes what is
/// left. @param rank of a weight of that size.
template <typename Rank>
void plant_contradiction(Frame& frame, Drawing& draw, double constant, Rank rank) {
  frame.parts.push_back({constant < 0 ? Sense::kNonStrict : Sense::kStrict,
                         draw.coefficients(frame, draw.chance(50) ? 1 : 3),
                         {}});
  Coefficients sums(static_cast<std::size_t>(frame.unknowns) + 1, Matrix::Zero(1, 1));
  for (Frame::Part& part : frame.parts) {
    const Eigen::Index n = part.f[0].rows();
    const Matrix root = draw.unit_triangle(n).leftCols(rank(n));
    part.weight = part.sense == Sense::kEqual ? Matrix::Constant(1, 1, draw.uniform(-3, 3))
                                              : Matrix(root * root.transpose());
    for (std::size_t k = 0; k < sums.size(); ++k) {
      sums[k](0, 0) += part.f[k].cwiseProduct(part.weight).sum();
    }
  }
  Frame::Part& last = frame.parts.back();
  for (std::size_t k = 0; k < sums.size(); ++k) last.f[k](0, 0) -= sums[k](0, 0);
  last.f[0](0, 0) += constant;
}

/// At the frame's point every value is W*D*W' and every weight W^-T*E*W^-1 with diagonal
/// D and E that share no entry: they are a primal and a dual solution.
void plant_optimum(Frame& frame, Drawing& draw, bool complementary) {
  for (Frame::Part& part : frame.parts) {
    const Eigen::Index n = part.f[0].rows();
    if (part.sense == Sense::kEqual) {
      part.weight = Matrix::Constant(1, 1, draw.uniform(-3, 3));
      set_value(part, frame.point, Matrix::Zero(1, 1));
      continue;
    }
    const Matrix w = draw.unit_triangle(n);
    const Matrix inverse =
        w.triangularView<Eigen::UnitLower>().solve(Matrix(Matrix::Identity(n, n)));
    Eigen::VectorXd slack = Eigen::VectorXd::Zero(n);
    Eigen::VectorXd weight = Eigen::VectorXd::Zero(n);
    for (Eigen::Index i = 0; i < n; ++i) {
      const int side = draw.uniform(0, complementary ? 1 : 2);
      if (side == 0) slack[i] = draw.uniform(1, 3);
      if (side == 1) weight[i] = draw.uniform(1, 3);
    }
    part.weight = inverse.transpose() * weight.asDiagonal() * inverse;
    // A matrix of unknowns gets a constant beside them.
    set_value(part, frame.point, w * slack.asDiagonal() * w.transpose());
  }
}

}  // namespace

EngineProblem integer_point(std::mt19937& random) {
  for (;;) {
    Drawing draw(random);
    Frame frame = draw.frame();
    plant_point(frame, draw);
    add_idle(frame, draw);
    EngineProblem drawn = with_point(frame, true);
    // Idle rows such as 0 >= 0 have no room, and need none.
    if (!drawn.has_room) {
      Frame needed = frame;
      std::erase_if(needed.parts, [](const Frame::Part& part) {
        return part.sense == Sense::kNonStrict &&
               std::all_of(part.f.begin(), part.f.end(),
                           [](const Matrix& m) { return m.isZero(0); });
      });
      drawn.has_room = satisfies(problem_of(needed), rational(frame.point), Rational(kPlantedRoom));
    }
    if (drawn.has_room) return drawn;
  }
}

EngineProblem integer_contradiction(std::mt19937& random) {
  Drawing draw(random);
  Frame frame = draw.frame();
  const double constant = draw.chance(50) ? 0 : -draw.uniform(1, 6);
  plant_contradiction(frame, draw, constant, [](Eigen::Index size) { return size; });
  add_idle(frame, draw);
  return with_contradiction(frame, true);
}

EngineProblem integer_optimum(std::mt19937& random) {
  for (;;) {
    Drawing draw(random);
    Frame frame = draw.frame();
    draw.add_helper(frame);
    plant_optimum(frame, draw, true);
    const std::vector<double> best = frame.point;
    ++frame.point.back();
    EngineProblem drawn = with_point(frame, true);
    if (!drawn.has_room || weights_of(frame).empty()) continue;
    add_objective(drawn, frame, best, draw.chance(50) ? 0 : draw.uniform(-9, 9));
    return drawn;
  }
}

EngineProblem optimum_at_the_box(std::mt19937& random) {
  for (;;) {
    Drawing draw(random);
    Frame frame = draw.frame();
    draw.add_helper(frame);
    plant_point(frame, draw);
    EngineProblem drawn = with_point(frame, true);
    if (!drawn.has_room) continue;
    drawn.problem.big_m = std::ldexp(1.0, draw.uniform(4, 14));
    LinearObjective& objective = drawn.problem.objective.emplace();
    objective.cost.assign(frame.point.size(), 0.0);
    objective.cost.back() = draw.uniform(1, 5);
    frame.point.back() = drawn.problem.big_m;
    require(satisfies(drawn.problem, rational(frame.point)), "the box alone limits it");
    drawn.optimum = drawn.reached = drawn.limit = objective.cost.back() * drawn.problem.big_m;
    drawn.limited_by_box = true;
    return drawn;
  }
}

EngineProblem outside_the_box(std::mt19937& random) {
  Drawing draw(random);
  Frame frame = draw.frame();
  const double big_m = std::ldexp(1.0, draw.uniform(3, 14));
  const int used = draw.uniform(1, frame.unknowns);
  Coefficients row(static_cast<std::size_t>(frame.unknowns) + 1, Matrix::Zero(1, 1));
  row[0](0, 0) = -big_m / 8;
  for (int k = 0; k < used; ++k) {
    const int sign = draw.chance(50) ? 1 : -1;
    const int weight = draw.uniform(1, 3);
    row[static_cast<std::size_t>(k) + 1](0, 0) = sign * weight;
    row[0](0, 0) -= big_m * weight;
    frame.point[static_cast<std::size_t>(k)] = sign * (big_m + big_m / 8);
  }
  for (Frame::Part& part : frame.parts) {
    part.is_variable = false;  // its constants make up for the point
  }
  plant_point(frame, draw);
  frame.parts.push_back({Sense::kNonStrict, std::move(row), {}});
  EngineProblem drawn{.problem = problem_of(frame), .truth = Truth::kOutsideBox};
  drawn.problem.big_m = 2 * big_m;
  require(satisfies(drawn.problem, rational(frame.point)), "a point is outside");
  drawn.problem.big_m = big_m;
  drawn.point = frame.point;
  return drawn;
}

EngineProblem singular_point(std::mt19937& random) {
  Drawing draw(random);
  Frame frame = draw.frame();
  for (Frame::Part& part : frame.parts) {
    const Eigen::Index n = part.f[0].rows();
    const bool singular = part.sense == Sense::kNonStrict;
    const int rank = static_cast<int>(n) - (singular ? draw.uniform(1, static_cast<int>(n)) : 0);
    const Matrix root = draw.unit_triangle(n).leftCols(rank);
    const bool equation = part.sense == Sense::kEqual;
    set_value(part, frame.point, equation ? Matrix::Zero(1, 1) : Matrix(root * root.transpose()));
  }
  add_idle(frame, draw);
  return with_point(frame, false);
}

EngineProblem singular_contradiction(std::mt19937& random) {
  Drawing draw(random);
  Frame frame = draw.frame();
  const double constant = draw.chance(50) ? 0 : -draw.uniform(1, 6);
  plant_contradiction(frame, draw, constant,
                      [&](Eigen::Index size) { return draw.uniform(1, static_cast<int>(size)); });
  add_idle(frame, draw);
  return with_contradiction(frame, false);
}

EngineProblem singular_optimum(std::mt19937& random) {
  for (;;) {
    Drawing draw(random);
    Frame frame = draw.frame();
    for (Frame::Part& part : frame.parts) {
      if (part.sense == Sense::kStrict) part.sense = Sense::kNonStrict;
    }
    plant_optimum(frame, draw, false);
    if (weights_of(frame).empty()) continue;
    EngineProblem drawn = with_point(frame, false);
    add_objective(drawn, frame, frame.point, 0);
    return drawn;
  }
}

EngineProblem hair_of_a_point(std::mt19937& random) {
  Drawing draw(random);
  Frame frame = draw.frame();
  const double hair = std::ldexp(1.0, -draw.uniform(10, 44));
  for (Frame::Part& part : frame.parts) {
    const Eigen::Index n = part.f[0].rows();
    if (part.sense == Sense::kEqual) {
      set_value(part, frame.point, Matrix::Zero(1, 1));
      continue;
    }
    const Matrix root = draw.unit_triangle(n).leftCols(draw.uniform(0, static_cast<int>(n)));
    set_value(part, frame.point, root * root.transpose());
    // Added to whole numbers below 8, and hence exact.
    part.f[0].diagonal().array() += hair;
  }
  return with_point(frame, false);
}

EngineProblem hair_of_a_contradiction(std::mt19937& random) {
  Drawing draw(random);
  Frame frame = draw.frame();
  const double constant = -std::ldexp(1.0, -draw.uniform(10, 40));
  plant_contradiction(frame, draw, constant, [&](Eigen::Index size) {
    return draw.chance(50) ? static_cast<int>(size) : draw.uniform(1, static_cast<int>(size));
  });
  return with_contradiction(frame, false);
}

EngineProblem hair_of_an_optimum(std::mt19937& random) {
  Drawing draw(random);
  const EngineProblem whole = integer_optimum(random);
  const LinearObjective& objective = *whole.problem.objective;
  const double hair = std::ldexp(draw.chance(50) ? 1.0 : -1.0, -draw.uniform(10, 36));
  EngineProblem drawn{.problem = whole.problem, .weights = whole.weights};
  drawn.problem.objective.reset();
  Block row{1, Sense::kNonStrict, static_cast<std::int32_t>(whole.problem.blocks.size()), {}};
  const auto add = [&](std::int32_t unknown, double value) {
    if (value != 0) row.terms.push_back({0, 0, unknown, value, std::fabs(value)});
  };
  add(kConstant, objective.constant - *whole.optimum + hair);
  for (std::int32_t k = 0; k < drawn.problem.unknowns; ++k) {
    add(k, objective.cost[static_cast<std::size_t>(k)]);
  }
  drawn.weights.push_back({drawn.problem.blocks.size(), RationalMatrix(1)});
  drawn.weights.back().weight.at(0, 0) = 1;
  drawn.problem.blocks.push_back(std::move(row));
  if (hair < 0) {
    drawn.truth = Truth::kInfeasible;
    require(contradict(drawn.problem, drawn.weights), "more than the optimum contradicts");
    return drawn;
  }
  drawn.truth = Truth::kFeasible;
  // The planted point is one step of the last unknown away from the optimum.
  const double step = std::ldexp(1.0, -44);
  drawn.point = whole.point;
  drawn.point.back() += step - 1;
  require(satisfies(drawn.problem, rational(drawn.point)), "less than the optimum is there");
  return drawn;
}

}  // namespace sdpsol::testing
