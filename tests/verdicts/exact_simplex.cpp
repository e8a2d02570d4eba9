// A dictionary: basic variables, and the objective, as affine functions of the
// others, all of them at least 0. Unknowns of either sign are differences
// v_k = w_k - w_n with one w_n for all. The first phase adds one artificial
// variable to every row and drives it out again.
#include "tests/verdicts/exact_simplex.h"

#include <algorithm>
#include <utility>

namespace sdpsol::testing {
namespace {

class Dictionary {
 public:
  /// @param rows constant + sum of coefficients * w >= 0, w >= 0.
  Dictionary(std::vector<std::vector<Rational>> rows, std::size_t columns)
      : rows_(std::move(rows)), columns_(columns) {
    for (std::size_t c = 0; c < columns_; ++c) nonbasic_.push_back(c);
    for (std::size_t r = 0; r < rows_.size(); ++r) basic_.push_back(columns_ + r);
  }

  /// Finds a dictionary whose constants are not negative. False if there is none.
  bool make_feasible() {
    const auto constant_of = [](const auto& a, const auto& b) { return a.back() < b.back(); };
    const auto least = std::min_element(rows_.begin(), rows_.end(), constant_of);
    if (least == rows_.end() || least->back() >= 0) return true;
    const std::size_t artificial = columns_ + rows_.size();
    // A column for the artificial variable, in front of the constants.
    for (auto& row : rows_) row.insert(row.end() - 1, Rational(1));
    nonbasic_.push_back(artificial);
    objective_.assign(columns_ + 2, Rational(0));
    objective_[columns_] = -1;
    pivot(static_cast<std::size_t>(least - rows_.begin()), columns_);
    climb();
    if (objective_.back() != 0) return false;
    drop(artificial);
    return true;
  }

  /// @param cost of the variables w. False if there is no bound.
  bool maximise(const std::vector<Rational>& cost) {
    objective_.assign(nonbasic_.size() + 1, Rational(0));
    for (std::size_t c = 0; c < nonbasic_.size(); ++c) {
      if (nonbasic_[c] < cost.size()) objective_[c] += cost[nonbasic_[c]];
    }
    for (std::size_t r = 0; r < rows_.size(); ++r) {
      if (basic_[r] >= cost.size() || cost[basic_[r]] == 0) continue;
      for (std::size_t c = 0; c < objective_.size(); ++c) {
        objective_[c] += cost[basic_[r]] * rows_[r][c];
      }
    }
    return climb();
  }

  const Rational& value() const { return objective_.back(); }

  Rational value_of(std::size_t variable) const {
    const auto found = std::find(basic_.begin(), basic_.end(), variable);
    if (found == basic_.end()) return 0;
    return rows_[static_cast<std::size_t>(found - basic_.begin())].back();
  }

 private:
  /// Bland's rule: the first variable that helps enters, and of the rows that stop
  /// it first the one with the first variable leaves.
  bool climb() {
    for (;;) {
      std::optional<std::size_t> entering;
      for (std::size_t c = 0; c < nonbasic_.size(); ++c) {
        if (objective_[c] <= 0) continue;
        if (!entering || nonbasic_[c] < nonbasic_[*entering]) entering = c;
      }
      if (!entering) return true;
      std::optional<std::size_t> leaving;
      Rational least;
      for (std::size_t r = 0; r < rows_.size(); ++r) {
        const Rational& slope = rows_[r][*entering];
        if (slope >= 0) continue;
        const Rational limit = rows_[r].back() / -slope;
        if (leaving && (limit > least || (limit == least && basic_[r] > basic_[*leaving]))) {
          continue;
        }
        leaving = r;
        least = limit;
      }
      if (!leaving) return false;
      pivot(*leaving, *entering);
    }
  }

  void pivot(std::size_t r, std::size_t c) {
    std::vector<Rational>& row = rows_[r];
    const Rational slope = row[c];
    // basic = ... + slope*nonbasic  =>  nonbasic = basic/slope - .../slope
    for (Rational& entry : row) entry /= -slope;
    row[c] = 1 / slope;
    std::swap(basic_[r], nonbasic_[c]);
    for (std::size_t other = 0; other < rows_.size(); ++other) {
      if (other != r) substitute(rows_[other], row, c);
    }
    substitute(objective_, row, c);
  }

  static void substitute(std::vector<Rational>& into, const std::vector<Rational>& row,
                         std::size_t c) {
    const Rational factor = into[c];
    if (factor == 0) return;
    into[c] = 0;
    for (std::size_t i = 0; i < into.size(); ++i) {
      if (row[i] != 0) into[i] += factor * row[i];
    }
  }

  /// Removes the artificial variable, which is 0.
  void drop(std::size_t artificial) {
    const auto basic = std::find(basic_.begin(), basic_.end(), artificial);
    if (basic != basic_.end()) {
      const auto r = static_cast<std::size_t>(basic - basic_.begin());
      const auto entry = std::find_if(rows_[r].begin(), rows_[r].end() - 1,
                                      [](const Rational& x) { return x != 0; });
      pivot(r, static_cast<std::size_t>(entry - rows_[r].begin()));
    }
    const auto nonbasic = std::find(nonbasic_.begin(), nonbasic_.end(), artificial);
    const auto c = nonbasic - nonbasic_.begin();
    nonbasic_.erase(nonbasic);
    for (auto& row : rows_) row.erase(row.begin() + c);
    objective_.erase(objective_.begin() + c);
  }

  std::vector<std::vector<Rational>> rows_;  ///< per basic variable: slopes, constant
  std::vector<Rational> objective_;
  std::size_t columns_;
  std::vector<std::size_t> basic_;
  std::vector<std::size_t> nonbasic_;
};

/// The row in the differences, its constant last, with a sign.
std::vector<Rational> in_differences(const RationalRow& row, int sign) {
  std::vector<Rational> result;
  Rational sum = 0;
  for (const Rational& a : row.coefficients) {
    result.emplace_back(sign * a);
    sum += a;
  }
  result.emplace_back(-sign * sum);
  result.emplace_back(sign * row.constant);
  return result;
}

}  // namespace

RationalOptimum maximise_exactly(const RationalProgram& program,
                                 const std::vector<Rational>& cost) {
  std::vector<std::vector<Rational>> rows;
  for (const RationalRow& row : program.rows) {
    rows.push_back(in_differences(row, 1));
    if (row.sense == Sense::kEqual) rows.push_back(in_differences(row, -1));
  }
  Dictionary dictionary(std::move(rows), program.unknowns + 1);
  RationalOptimum optimum;
  if (!dictionary.make_feasible()) return optimum;
  std::vector<Rational> differences = cost;
  Rational sum = 0;
  for (const Rational& c : cost) sum += c;
  differences.emplace_back(-sum);
  if (!dictionary.maximise(differences)) {
    optimum.kind = RationalOptimum::Kind::kUnbounded;
    return optimum;
  }
  optimum.kind = RationalOptimum::Kind::kReached;
  optimum.value = dictionary.value();
  const Rational shift = dictionary.value_of(program.unknowns);
  for (std::size_t k = 0; k < program.unknowns; ++k) {
    optimum.point.emplace_back(dictionary.value_of(k) - shift);
  }
  return optimum;
}

std::optional<std::vector<Rational>> exact_solution(const RationalProgram& program) {
  // What strict rows leave at least, capped so that it has a largest value.
  RationalProgram slack = program;
  slack.unknowns += 1;
  for (RationalRow& row : slack.rows) {
    row.coefficients.emplace_back(row.sense == Sense::kStrict ? -1 : 0);
  }
  std::vector<Rational> last(slack.unknowns);
  last.back() = -1;
  slack.rows.push_back({last, 1, Sense::kNonStrict});
  last.back() = 1;
  RationalOptimum optimum = maximise_exactly(slack, last);
  if (optimum.kind != RationalOptimum::Kind::kReached || optimum.value <= 0) return std::nullopt;
  optimum.point.pop_back();
  return std::move(optimum.point);
}

RationalProgram with_box(RationalProgram program, const Rational& bound) {
  for (std::size_t k = 0; k < program.unknowns; ++k) {
    for (const int sign : {1, -1}) {
      RationalRow row{std::vector<Rational>(program.unknowns), bound, Sense::kNonStrict};
      row.coefficients[k] = sign;
      program.rows.push_back(std::move(row));
    }
  }
  return program;
}

RationalProgram with_room(const RationalProgram& program, const Rational& share) {
  const std::size_t n = program.unknowns;
  RationalProgram result;
  result.unknowns = 2 * n;
  for (RationalRow row : program.rows) {
    row.coefficients.resize(2 * n);
    if (row.sense != Sense::kEqual) {
      const bool own = row.magnitudes.empty();
      row.sense = Sense::kStrict;
      for (std::size_t k = 0; k < n; ++k) {
        const Rational size = own ? abs(row.coefficients[k]) : row.magnitudes[k];
        row.coefficients[n + k] = -share * size;
      }
      const Rational size = own ? abs(row.constant) : row.magnitudes[n];
      row.constant -= share * size;
    }
    result.rows.push_back(std::move(row));
  }
  for (std::size_t k = 0; k < n; ++k) {  // v <= m, -v <= m
    for (const int sign : {1, -1}) {
      RationalRow row{std::vector<Rational>(2 * n), 0, Sense::kNonStrict};
      row.coefficients[k] = sign;
      row.coefficients[n + k] = 1;
      result.rows.push_back(std::move(row));
    }
  }
  return result;
}

}  // namespace sdpsol::testing
