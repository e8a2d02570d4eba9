#include "tests/verdicts/random_definitions.h"

#include <cstdlib>

namespace sdpsol::testing {
namespace {

Rational power_of_ten(int exponent) {
  mpz_class power;
  mpz_ui_pow_ui(power.get_mpz_t(), 10, static_cast<unsigned long>(std::abs(exponent)));
  return exponent < 0 ? Rational(1, power) : Rational(power);
}

std::string name_of_unknown(int k) {
  return "v" + std::to_string(k);
}

}  // namespace

const char* name_of(LinearKind kind) {
  switch (kind) {
    case LinearKind::kIntegers:
      return "integers";
    case LinearKind::kCones:
      return "cones";
    case LinearKind::kDecimals:
      return "decimals";
    case LinearKind::kDependent:
      return "dependent rows";
    case LinearKind::kEquations:
      return "equations";
    case LinearKind::kDuplicated:
      return "duplicated rows";
    case LinearKind::kUnused:
      return "unused unknowns";
    case LinearKind::kBadlyScaled:
      return "badly scaled";
    case LinearKind::kSmallBox:
      return "small box";
    case LinearKind::kSums:
      return "sums";
  }
  return "";
}

Rational RandomDefinitions::Decimal::value() const {
  Rational result = power_of_ten(exponent) * mantissa;
  return result;
}

std::string RandomDefinitions::Decimal::text() const {
  const std::string digits = std::to_string(std::labs(mantissa));
  const std::string sign = mantissa < 0 ? "-" : "";
  if (exponent == 0) return sign + digits;
  // Both ways of writing: 0.00123 and 123e-5.
  if (exponent > 0 || exponent < -6) return sign + digits + "e" + std::to_string(exponent);
  const auto places = static_cast<std::size_t>(-exponent);
  const std::string padded =
      std::string(digits.size() <= places ? places + 1 - digits.size() : 0, '0') + digits;
  return sign + padded.substr(0, padded.size() - places) + "." +
         padded.substr(padded.size() - places);
}

Rational RandomDefinitions::value_of(const Sum& sum) {
  Rational value = 0;
  for (const Decimal& d : sum) value += d.value();
  return value;
}

Rational RandomDefinitions::magnitude_of(const Sum& sum) {
  Rational value = 0;
  for (const Decimal& d : sum) value += abs(d.value());
  return value;
}

Sense RandomDefinitions::sense(int percent_equations) {
  if (chance(percent_equations)) return Sense::kEqual;
  return chance(50) ? Sense::kStrict : Sense::kNonStrict;
}

RandomDefinitions::Decimal RandomDefinitions::six_digits() {
  constexpr long kDigits[] = {9, 99, 999, 99999, 999999};
  const int size = uniform(0, 4);
  const auto mantissa = static_cast<long>(uniform(1, static_cast<int>(kDigits[size])));
  return {chance(50) ? mantissa : -mantissa, -uniform(size == 0 ? 0 : 1, size + 1)};
}

std::vector<RandomDefinitions::Row> RandomDefinitions::integer_rows(int largest_constant,
                                                                    int percent_equations) {
  std::vector<Row> rows(static_cast<std::size_t>(uniform(1, 6)));
  for (Row& row : rows) {
    for (int k = 0; k < unknowns_; ++k) row.coefficients.push_back({{uniform(-3, 3), 0}});
    row.constant = {{uniform(-largest_constant, largest_constant), 0}};
    row.sense = sense(percent_equations);
  }
  return rows;
}

/// Half of the rows pass through one point of small integers, exactly on paper.
std::vector<RandomDefinitions::Row> RandomDefinitions::decimal_rows() {
  std::vector<int> point(static_cast<std::size_t>(unknowns_));
  for (int& v : point) v = uniform(-3, 3);
  std::vector<Row> rows(static_cast<std::size_t>(uniform(1, 6)));
  for (Row& row : rows) {
    const bool through = chance(50);
    row.sense = sense(15);
    for (std::size_t k = 0; k < point.size(); ++k) {
      const Decimal a = six_digits();
      row.coefficients.push_back({a});
      if (through && point[k] != 0) row.constant.push_back({-a.mantissa * point[k], a.exponent});
    }
    if (!through) row.constant = {six_digits()};
    if (through && row.constant.size() > 1) {
      // Added up here, as a person would write it: one number.
      long total = 0;
      constexpr int kFinest = -6;
      for (const Decimal& d : row.constant) {
        long shifted = d.mantissa;
        for (int e = d.exponent; e > kFinest; --e) shifted *= 10;
        total += shifted;
      }
      row.constant = {{total, kFinest}};
    }
  }
  return rows;
}

void RandomDefinitions::add_combinations(std::vector<Row>& rows) {
  const std::size_t originals = rows.size();
  const int count = uniform(1, 2);
  for (int c = 0; c < count; ++c) {
    Row sum;
    sum.sense = sense(25);
    sum.coefficients.resize(static_cast<std::size_t>(unknowns_));
    auto add = [](Sum& to, const Sum& from, int weight) {
      for (const Decimal& d : from) to.push_back({d.mantissa * weight, d.exponent});
    };
    const int turned = chance(50) ? -1 : 1;
    for (std::size_t r = 0; r < originals; ++r) {
      const int weight = turned * uniform(0, 3);
      if (weight == 0) continue;
      for (std::size_t k = 0; k < sum.coefficients.size(); ++k) {
        add(sum.coefficients[k], rows[r].coefficients[k], weight);
      }
      add(sum.constant, rows[r].constant, weight);
    }
    // Integers and decimals of one exponent are added up, as a person would.
    auto collect = [](Sum& terms) {
      Sum collected;
      for (const Decimal& d : terms) {
        if (!collected.empty() && collected.back().exponent == d.exponent) {
          collected.back().mantissa += d.mantissa;
        } else {
          collected.push_back(d);
        }
      }
      terms = collected;
    };
    for (Sum& terms : sum.coefficients) collect(terms);
    collect(sum.constant);
    if (chance(30)) sum.constant.push_back({uniform(-1, 1), -uniform(0, 6)});
    rows.push_back(std::move(sum));
  }
}

void RandomDefinitions::add_duplicates(std::vector<Row>& rows) {
  const int count = uniform(1, 3);
  for (int c = 0; c < count; ++c) {
    Row copy = rows[static_cast<std::size_t>(uniform(0, static_cast<int>(rows.size()) - 1))];
    constexpr long kFactors[] = {1, 1, 2, 7, -1, -1, -3};
    const long factor = kFactors[uniform(0, 6)];
    const int exponent = chance(30) ? uniform(-3, 3) : 0;
    auto scale = [&](Sum& terms) {
      for (Decimal& d : terms) d = {d.mantissa * factor, d.exponent + exponent};
    };
    for (Sum& terms : copy.coefficients) scale(terms);
    scale(copy.constant);
    if (chance(50)) copy.sense = sense(15);
    rows.push_back(std::move(copy));
  }
}

void RandomDefinitions::drop_unknowns(std::vector<Row>& rows) {
  for (std::size_t k = 0; k < static_cast<std::size_t>(unknowns_); ++k) {
    if (!chance(50)) continue;
    const bool times_zero = chance(50);
    for (Row& row : rows) {
      row.coefficients[k] = times_zero ? Sum{{0, 0}} : Sum{};
    }
  }
}

void RandomDefinitions::change_units(std::vector<Row>& rows) {
  std::vector<int> units(static_cast<std::size_t>(unknowns_));
  for (int& unit : units) unit = uniform(-6, 6);
  for (Row& row : rows) {
    const int unit = uniform(-5, 5);
    for (std::size_t k = 0; k < units.size(); ++k) {
      for (Decimal& d : row.coefficients[k]) d.exponent += unit + units[k];
    }
    for (Decimal& d : row.constant) d.exponent += unit;
  }
}

/// 0.3 becomes 0.1 + 0.2, or 7.3 - 7, or 1e9 + 0.3 - 1e9.
void RandomDefinitions::write_as_sums(std::vector<Row>& rows) {
  auto spread = [&](Sum& terms) {
    if (chance(60)) return;
    Decimal by = six_digits();
    if (chance(20)) by = {by.mantissa, uniform(0, 9)};
    terms.insert(terms.begin(), by);
    terms.push_back({-by.mantissa, by.exponent});
  };
  for (Row& row : rows) {
    for (Sum& terms : row.coefficients) spread(terms);
    spread(row.constant);
  }
}

std::vector<RandomDefinitions::Row> RandomDefinitions::rows_of(LinearKind kind) {
  std::vector<Row> rows;
  switch (kind) {
    case LinearKind::kIntegers:
      return integer_rows(3, 15);
    case LinearKind::kCones:
      return integer_rows(0, 15);
    case LinearKind::kDecimals:
      return decimal_rows();
    case LinearKind::kDependent:
      rows = chance(50) ? integer_rows(3, 20) : decimal_rows();
      add_combinations(rows);
      return rows;
    case LinearKind::kEquations:
      rows = chance(70) ? integer_rows(2, 60) : decimal_rows();
      if (chance(50)) add_combinations(rows);
      return rows;
    case LinearKind::kDuplicated:
      rows = chance(50) ? integer_rows(2, 15) : decimal_rows();
      add_duplicates(rows);
      return rows;
    case LinearKind::kUnused:
      rows = integer_rows(3, 15);
      drop_unknowns(rows);
      return rows;
    case LinearKind::kBadlyScaled:
      rows = integer_rows(3, 10);
      change_units(rows);
      return rows;
    case LinearKind::kSmallBox:
      return integer_rows(20, 10);
    case LinearKind::kSums:
      rows = chance(50) ? integer_rows(3, 15) : decimal_rows();
      write_as_sums(rows);
      return rows;
  }
  return rows;
}

std::string RandomDefinitions::text_of(const Sum& sum) const {
  std::string text;
  for (const Decimal& d : sum) text += (d.mantissa < 0 ? "" : "+") + d.text();
  return text;
}

std::string RandomDefinitions::text_of(const Row& row) const {
  std::string text;
  for (std::size_t k = 0; k < row.coefficients.size(); ++k) {
    for (const Decimal& d : row.coefficients[k]) {
      text += (d.mantissa < 0 ? "" : "+") + d.text() + "*" + name_of_unknown(static_cast<int>(k));
    }
  }
  text += text_of(row.constant);
  if (text.empty()) text = "0";
  switch (row.sense) {
    case Sense::kStrict:
      return text + ">0;\n";
    case Sense::kNonStrict:
      return text + ">=0;\n";
    case Sense::kEqual:
      return text + "==0;\n";
  }
  return text;
}

LinearDefinition RandomDefinitions::draw(LinearKind kind, bool with_objective) {
  unknowns_ = uniform(1, 4);
  LinearDefinition definition;
  definition.kind = kind;
  definition.paper.unknowns = static_cast<std::size_t>(unknowns_);
  if (kind == LinearKind::kSmallBox) definition.big_m = uniform(1, 9);
  if (kind == LinearKind::kBadlyScaled) definition.big_m = 1000000000;
  definition.text = "BIGM=" + definition.big_m.get_str() + ";\nvariable ";
  for (int k = 0; k < unknowns_; ++k) {
    definition.text += (k == 0 ? "" : ",") + name_of_unknown(k);
  }
  definition.text += ";\n";
  for (const Row& row : rows_of(kind)) {
    RationalRow rational;
    for (const Sum& terms : row.coefficients) rational.coefficients.push_back(value_of(terms));
    rational.constant = value_of(row.constant);
    for (const Sum& terms : row.coefficients) rational.magnitudes.push_back(magnitude_of(terms));
    rational.magnitudes.push_back(magnitude_of(row.constant));
    rational.sense = row.sense;
    definition.paper.rows.push_back(std::move(rational));
    definition.text += text_of(row);
  }
  if (with_objective) {
    definition.text += "maximize o=0";
    for (int k = 0; k < unknowns_; ++k) {
      const Decimal c = chance(50) ? Decimal{uniform(-3, 3), 0} : six_digits();
      definition.cost.push_back(c.value());
      definition.text += (c.mantissa < 0 ? "" : "+") + c.text() + "*" + name_of_unknown(k);
    }
    definition.text += ";\n";
  }
  return definition;
}

}  // namespace sdpsol::testing
