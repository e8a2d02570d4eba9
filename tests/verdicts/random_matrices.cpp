#include "tests/verdicts/random_matrices.h"

#include <algorithm>
#include <cmath>

namespace sdpsol::testing {

const char* name_of(MatrixKind kind) {
  switch (kind) {
    case MatrixKind::kSingularPoint:
      return "SingularPoint";
    case MatrixKind::kFaces:
      return "Faces";
    case MatrixKind::kStrictFaces:
      return "StrictFaces";
    case MatrixKind::kCertificate:
      return "Certificate";
    case MatrixKind::kZeroCertificate:
      return "ZeroCertificate";
    case MatrixKind::kWeak:
      return "Weak";
  }
  return "";
}

RandomMatrices::Matrix RandomMatrices::tall(Eigen::Index rows, Eigen::Index columns) {
  return Matrix::NullaryExpr(rows, columns, [&] { return uniform(-2, 2); });
}

RandomMatrices::Matrix RandomMatrices::symmetric(Eigen::Index size) {
  Matrix m = tall(size, size);
  m.triangularView<Eigen::StrictlyLower>() = m.transpose();
  return m;
}

RandomMatrices::Coefficients RandomMatrices::coefficients(Eigen::Index size, int unknowns) {
  Coefficients result;
  for (int k = 0; k <= unknowns; ++k) {
    result.push_back(uniform(0, 4) == 0 ? Matrix(Matrix::Zero(size, size)) : symmetric(size));
  }
  return result;
}

void RandomMatrices::append(Problem& problem, Sense sense, const Coefficients& coefficients) {
  const auto size = static_cast<std::int32_t>(coefficients[0].rows());
  Block block{size, sense, static_cast<std::int32_t>(problem.blocks.size()), {}};
  for (std::size_t k = 0; k < coefficients.size(); ++k) {
    for (std::int32_t i = 0; i < size; ++i) {
      for (std::int32_t j = i; j < size; ++j) {
        const double value = coefficients[k](i, j);
        if (value == 0) continue;
        block.terms.push_back(
            {i, j, static_cast<std::int32_t>(k) + kConstant, value, std::fabs(value)});
      }
    }
  }
  problem.blocks.push_back(std::move(block));
}

RandomMatrices::Matrix RandomMatrices::at(const Coefficients& coefficients,
                                          const std::vector<double>& point) {
  Matrix sum = coefficients[0];
  for (std::size_t k = 0; k < point.size(); ++k) sum += point[k] * coefficients[k + 1];
  return sum;
}

PlantedProblem RandomMatrices::singular_point() {
  PlantedProblem planted;
  planted.feasible = true;
  const int unknowns = planted.problem.unknowns = uniform(1, 4);
  planted.point.resize(static_cast<std::size_t>(unknowns));
  for (double& v : planted.point) v = uniform(-3, 3);
  const int blocks = uniform(1, 3);
  for (int b = 0; b < blocks; ++b) {
    const Eigen::Index size = uniform(2, 4);
    Coefficients f = coefficients(size, unknowns);
    const Matrix root = tall(size, uniform(0, static_cast<int>(size) - 1));
    f[0] += root * root.transpose() - at(f, planted.point);
    append(planted.problem, Sense::kNonStrict, f);
  }
  const int rows = uniform(0, 3);
  for (int r = 0; r < rows; ++r) {
    Coefficients f = coefficients(1, unknowns);
    const Sense sense = uniform(0, 2) == 0 ? Sense::kEqual : Sense::kNonStrict;
    const int slack = sense == Sense::kEqual || uniform(0, 1) == 0 ? 0 : uniform(1, 3);
    f[0].array() += slack - at(f, planted.point)(0, 0);
    append(planted.problem, sense, f);
  }
  return planted;
}

PlantedProblem RandomMatrices::faces(Sense sense) {
  PlantedProblem planted;
  planted.feasible = sense == Sense::kNonStrict;
  const int unknowns = planted.problem.unknowns = uniform(1, 4);
  std::vector<double> point(static_cast<std::size_t>(unknowns));
  for (double& v : point) v = uniform(-3, 3);
  const int blocks = uniform(1, 2);
  for (int b = 0; b < blocks; ++b) {
    const Eigen::Index rank = uniform(1, 3);
    Coefficients f = coefficients(rank, unknowns);
    const Matrix root = tall(rank, rank);
    f[0] += root * root.transpose() + Matrix::Identity(rank, rank) - at(f, point);
    const Matrix frame = tall(rank + uniform(1, 2), rank);
    for (Matrix& m : f) m = Matrix(frame * m * frame.transpose());
    append(planted.problem, sense, f);
  }
  if (planted.feasible) planted.point = point;
  return planted;
}

/// Whatever the blocks and their integer weights leave of an unknown, one row of
/// weight 1 takes away, so that everything cancels exactly.
PlantedProblem RandomMatrices::certificate(bool zero) {
  PlantedProblem planted;
  const int unknowns = planted.problem.unknowns = uniform(1, 4);
  Coefficients last(static_cast<std::size_t>(unknowns) + 1, Matrix::Zero(1, 1));
  const int blocks = uniform(1, 3);
  for (int b = 0; b < blocks; ++b) {
    const Eigen::Index size = uniform(1, 4);
    const Coefficients f = coefficients(size, unknowns);
    const Matrix factor = tall(size, uniform(1, static_cast<int>(size)));
    const Matrix weight = factor * factor.transpose();
    for (std::size_t k = 0; k < f.size(); ++k) last[k](0, 0) -= f[k].cwiseProduct(weight).sum();
    planted.certificate.push_back({planted.problem.blocks.size(), factor});
    append(planted.problem, uniform(0, 1) == 0 ? Sense::kStrict : Sense::kNonStrict, f);
  }
  if (!zero) last[0](0, 0) -= uniform(1, 3);
  planted.certificate.push_back({planted.problem.blocks.size(), Matrix::Ones(1, 1)});
  append(planted.problem, zero ? Sense::kStrict : Sense::kNonStrict, last);
  return planted;
}

/// A positive semidefinite matrix whose last diagonal entry is not positive, and
/// beside it something that is not 0, turned by integers so that it does not show.
PlantedProblem RandomMatrices::weak() {
  PlantedProblem planted;
  const Eigen::Index size = uniform(2, 4);
  Eigen::Index entries = size * (size + 1) / 2;
  planted.problem.unknowns = static_cast<std::int32_t>(entries);
  Matrix turn = Matrix::Identity(size, size);
  for (Eigen::Index i = 0; i < size; ++i) {
    for (Eigen::Index j = 0; j < i; ++j) turn(i, j) = uniform(-1, 1);
  }
  if (uniform(0, 1) == 0) turn = Matrix(turn * turn.transpose());
  Coefficients f = {Matrix::Zero(size, size)};
  std::vector<std::pair<Eigen::Index, Eigen::Index>> place;
  for (Eigen::Index i = 0; i < size; ++i) {
    for (Eigen::Index j = i; j < size; ++j) {
      Matrix unit = Matrix::Zero(size, size);
      unit(i, j) = unit(j, i) = 1;
      f.push_back(turn * unit * turn.transpose());
      place.emplace_back(i, j);
    }
  }
  append(planted.problem, Sense::kNonStrict, f);
  const auto row = [&](Eigen::Index i, Eigen::Index j, double weight, double constant,
                       Sense sense) {
    Coefficients r(f.size(), Matrix::Zero(1, 1));
    const auto found = std::find(place.begin(), place.end(), std::pair(i, j));
    r[static_cast<std::size_t>(found - place.begin()) + 1](0, 0) = weight;
    r[0](0, 0) = constant;
    append(planted.problem, sense, r);
  };
  row(size - 1, size - 1, -1, 0, uniform(0, 1) == 0 ? Sense::kNonStrict : Sense::kEqual);
  // Not 0: at least 1, or strictly positive.
  if (uniform(0, 1) == 0) {
    row(0, size - 1, 1, -1, Sense::kNonStrict);
  } else {
    row(0, size - 1, 1, 0, Sense::kStrict);
  }
  return planted;
}

PlantedProblem RandomMatrices::draw(MatrixKind kind) {
  switch (kind) {
    case MatrixKind::kSingularPoint:
      return singular_point();
    case MatrixKind::kFaces:
      return faces(Sense::kNonStrict);
    case MatrixKind::kStrictFaces:
      return faces(Sense::kStrict);
    case MatrixKind::kCertificate:
      return certificate(false);
    case MatrixKind::kZeroCertificate:
      return certificate(true);
    case MatrixKind::kWeak:
      return weak();
  }
  return {};
}

}  // namespace sdpsol::testing
