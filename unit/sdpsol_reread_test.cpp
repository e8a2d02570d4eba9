// Random problems, composed, read back and compared with their data to the six
// digits that a text carries.
#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "unit/definition_reader.h"
#include "unit/sdpsol_compose.h"

namespace {

using unit_test::Affine;
using unit_test::AffineMatrix;
using unit_test::ReadDefinition;
using Random = std::mt19937_64;

std::string numbered(std::string name, std::size_t number) {
  name += std::to_string(number);
  return name;
}

double random_number(Random& random) {
  if (random() % 8 == 0) return static_cast<double>(random() % 5) - 2.0;
  const double mantissa = static_cast<double>(random() >> 11) * 0x1p-53 - 0.5;
  return mantissa * std::pow(10.0, static_cast<double>(random() % 16) - 8.0);
}

std::vector<double> random_numbers(Random& random, std::size_t count) {
  std::vector<double> numbers(count);
  for (double& number : numbers) number = random_number(random);
  return numbers;
}

struct RandomGrasp {
  std::vector<double> base;
  std::vector<int> types;
  std::vector<double> friction;
  std::vector<double> bounds;
  std::size_t coordinates = 0;
  std::vector<std::size_t> first_component;
  std::size_t components = 0;

  explicit RandomGrasp(Random& random) : coordinates(1 + random() % 6) {
    for (std::size_t left = 1 + random() % 6; left > 0; --left) {
      types.push_back(random() % 2 == 0 ? 1 : 3);
      first_component.push_back(components);
      components += static_cast<std::size_t>(types.back());
    }
    base = random_numbers(random, components * coordinates);
    friction = random_numbers(random, types.size());
    bounds = random_numbers(random, 2 * components);
  }

  sdpsol_internal::Grasp view() const { return {base, types, friction, bounds}; }

  Affine force(std::size_t component, double factor = 1.0) const {
    Affine sum;
    for (std::size_t j = 0; j < coordinates; ++j) {
      sum[numbered("z", j)] = factor * base[component * coordinates + j];
    }
    return sum;
  }
};

enum class Kind { kExists, kIndividual, kFrictionContacts, kAll, kPointContact };

// What a contact's margin is called in a problem: nothing where it has none.
struct Problem {
  Kind kind = Kind::kExists;
  std::vector<int> chosen;

  bool is_chosen(std::size_t contact) const {
    for (const int m : chosen) {
      if (m == static_cast<int>(contact)) return true;
    }
    return false;
  }

  std::string margin(const RandomGrasp& grasp, std::size_t contact) const {
    std::string own = numbered("epsilon", contact);
    switch (kind) {
      case Kind::kExists:
        return "";
      case Kind::kIndividual:
        return is_chosen(contact) ? own : "";
      case Kind::kFrictionContacts:
        return grasp.types[contact] == 3 ? own : "";
      case Kind::kAll:
        return own;
      case Kind::kPointContact:
        return is_chosen(contact) ? "epsilon" : "";
    }
    return "";
  }
};

AffineMatrix expected_inequality(const RandomGrasp& grasp, const Problem& problem) {
  AffineMatrix f(grasp.components, std::vector<Affine>(grasp.components));
  for (std::size_t i = 0; i < grasp.types.size(); ++i) {
    const std::size_t s = grasp.first_component[i];
    const auto size = static_cast<std::size_t>(grasp.types[i]);
    if (size == 1) {
      f[s][s] = grasp.force(s);
      if (problem.kind == Kind::kFrictionContacts) f[s][s][""] = -1.0;
    } else {
      for (std::size_t d = 0; d < 3; ++d) f[s + d][s + d] = grasp.force(s + 2, grasp.friction[i]);
      f[s][s + 2] = f[s + 2][s] = grasp.force(s);
      f[s + 1][s + 2] = f[s + 2][s + 1] = grasp.force(s + 1);
    }
    const std::string margin = problem.margin(grasp, i);
    if (margin.empty()) continue;
    for (std::size_t d = 0; d < size; ++d) f[s + d][s + d][margin] = -1.0;
  }
  return f;
}

std::optional<Affine> expected_objective(const RandomGrasp& grasp, const Problem& problem) {
  Affine sum;
  const auto all_but_one = static_cast<double>(grasp.types.size() - 1);
  switch (problem.kind) {
    case Kind::kExists:
      return std::nullopt;
    case Kind::kIndividual:
      for (const int m : problem.chosen) {
        const auto contact = static_cast<std::size_t>(m);
        const auto share = 1.0 / static_cast<double>(problem.chosen.size());
        if (grasp.types[contact] == 1) {
          sum[numbered("epsilon", contact)] += share;
          continue;
        }
        for (const auto& [z, value] : grasp.force(grasp.first_component[contact] + 2, share)) {
          sum[z] += value;
        }
      }
      return sum;
    case Kind::kFrictionContacts:
    case Kind::kAll:
      for (std::size_t i = 0; i < grasp.types.size(); ++i) {
        const std::string margin = problem.margin(grasp, i);
        if (margin.empty()) continue;
        sum[margin] = grasp.types[i] == 3 ? 1.0 / all_but_one : 1.0;
      }
      return sum;
    case Kind::kPointContact:
      return Affine{{"epsilon", 1.0}};
  }
  return std::nullopt;
}

// Two numbers of six digits may take part in one coefficient.
void expect_near(const Affine& read, const Affine& expected, double scale = 0.0) {
  Affine both = read;
  both.insert(expected.begin(), expected.end());
  for (const auto& [variable, unused] : both) {
    const auto a = read.find(variable);
    const auto b = expected.find(variable);
    const double read_value = a == read.end() ? 0.0 : a->second;
    const double expected_value = b == expected.end() ? 0.0 : b->second;
    EXPECT_NEAR(read_value, expected_value, 1.1e-5 * std::max(std::abs(expected_value), scale))
        << variable;
  }
}

void expect_near(const AffineMatrix& read, const AffineMatrix& expected) {
  ASSERT_EQ(read.size(), expected.size());
  for (std::size_t r = 0; r < read.size(); ++r) {
    ASSERT_EQ(read[r].size(), expected[r].size());
    for (std::size_t c = 0; c < read[r].size(); ++c) expect_near(read[r][c], expected[r][c]);
  }
}

std::string composed_text(const sdpsol_internal::Composed& composed) {
  EXPECT_EQ(composed.warnings, "");
  return composed.definition.value();
}

std::string compose(const RandomGrasp& grasp, const Problem& problem) {
  switch (problem.kind) {
    case Kind::kExists:
      return composed_text(sdpsol_internal::compose_exists(grasp.view()));
    case Kind::kIndividual:
      return composed_text(sdpsol_internal::compose_individual(grasp.view(), problem.chosen));
    case Kind::kFrictionContacts:
      return composed_text(sdpsol_internal::compose_friction_contacts(grasp.view()));
    case Kind::kAll:
      return composed_text(sdpsol_internal::compose_all(grasp.view()));
    case Kind::kPointContact:
      return composed_text(sdpsol_internal::compose_point_contact(
          grasp.view(), static_cast<std::uint32_t>(problem.chosen.at(0))));
  }
  return "";
}

// The relations but for the inequality: bounds of forces, positive margins.
void check_bounds(const ReadDefinition& read, const RandomGrasp& grasp) {
  std::size_t bound = 0;
  for (const unit_test::Relation& relation : read.relations) {
    const Affine& left = relation.left.at(0).at(0);
    if (relation.left.size() > 1 || relation.right[0][0].count("") == 0) continue;
    const bool of_margin = left.size() == 1 && left.begin()->first.rfind("epsilon", 0) == 0;
    if (of_margin) {
      EXPECT_EQ(relation.sign, ">");
      expect_near(relation.right[0][0], {{"", 0.0}});
      continue;
    }
    if (bound == grasp.bounds.size()) continue;
    EXPECT_EQ(relation.sign, bound % 2 == 0 ? ">" : "<");
    expect_near(left, grasp.force(bound / 2));
    expect_near(relation.right[0][0], {{"", grasp.bounds[bound]}});
    ++bound;
  }
  EXPECT_EQ(bound, grasp.bounds.size());
}

class RandomProblems : public ::testing::TestWithParam<Kind> {};

TEST_P(RandomProblems, ReadBackAsTheDataTheyWereComposedFrom) {
  Random random(31 + static_cast<unsigned>(GetParam()));
  for (int i = 0; i < 200; ++i) {
    const RandomGrasp grasp(random);
    Problem problem;
    problem.kind = GetParam();
    for (std::size_t left = 1 + random() % 4; left > 0; --left) {
      problem.chosen.push_back(static_cast<int>(random() % grasp.types.size()));
    }
    if (problem.kind == Kind::kPointContact) problem.chosen.resize(1);
    const std::string text = compose(grasp, problem);
    SCOPED_TRACE(text);
    // Division by the number of contacts minus one is by 0 for a single contact.
    if (text.find(")/0") != std::string::npos) continue;
    const ReadDefinition read = unit_test::DefinitionReader(text).read();
    expect_near(read.values.at("BIGM"), {{{{"", 300000.0}}}});
    check_bounds(read, grasp);
    const unit_test::Relation& inequality = read.relations.back();
    EXPECT_EQ(inequality.sign, ">");
    expect_near(inequality.right, {{{{"", 0.0}}}});
    expect_near(inequality.left, expected_inequality(grasp, problem));
    const std::optional<Affine> objective = expected_objective(grasp, problem);
    ASSERT_EQ(read.objective.empty(), !objective.has_value());
    // Shares of one coordinate may cancel, so the largest share sets the scale.
    if (objective) {
      double largest = 0.0;
      for (const double number : grasp.base) largest = std::max(largest, std::abs(number));
      const double scale = problem.kind == Kind::kIndividual ? largest : 0.0;
      expect_near(read.objective[0][0], *objective, scale);
    }
    ASSERT_FALSE(HasFailure());
  }
}

INSTANTIATE_TEST_SUITE_P(AllKinds, RandomProblems,
                         ::testing::Values(Kind::kExists, Kind::kIndividual,
                                           Kind::kFrictionContacts, Kind::kAll,
                                           Kind::kPointContact));

TEST(RandomInequalities, ReadBackAsTheMatricesTheyWereComposedFrom) {
  Random random(37);
  for (int i = 0; i < 300; ++i) {
    const std::size_t size = 1 + random() % 5;
    std::vector<std::vector<std::vector<double>>> matrices(1 + random() % 6);
    AffineMatrix expected(size, std::vector<Affine>(size));
    for (std::size_t k = 0; k < matrices.size(); ++k) {
      for (std::size_t r = 0; r < size; ++r) {
        matrices[k].push_back(random_numbers(random, size));
        for (std::size_t c = 0; c < size; ++c) {
          expected[r][c][k == 0 ? "" : numbered("x", k)] = matrices[k][r][c];
        }
      }
    }
    const bool strict = random() % 2 == 0;
    const std::string text = composed_text(sdpsol_internal::compose_lmi(matrices, strict));
    SCOPED_TRACE(text);
    const ReadDefinition read = unit_test::DefinitionReader(text).read();
    EXPECT_EQ(read.variables.size(), matrices.size() - 1);
    ASSERT_EQ(read.relations.size(), 1U);
    EXPECT_EQ(read.relations[0].sign, strict ? ">" : ">=");
    expect_near(read.relations[0].left, expected);
    ASSERT_FALSE(HasFailure());
  }
}

}  // namespace
