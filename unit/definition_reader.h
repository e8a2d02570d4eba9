// A small reader of composed definitions, for tests: it evaluates every
// statement to matrices of affine expressions in the declared variables, so
// that a text can be compared with the data it was composed from. It knows the
// pieces of the language that the driver writes, and refuses everything else.
#pragma once

#include <cctype>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace unit_test {

/// Coefficients by variable name; the constant under "".
using Affine = std::map<std::string, double>;
using AffineMatrix = std::vector<std::vector<Affine>>;

struct Relation {
  AffineMatrix left;
  std::string sign;
  AffineMatrix right;
};

struct ReadDefinition {
  std::vector<std::string> variables;
  std::map<std::string, AffineMatrix> values;
  std::vector<Relation> relations;
  /// Empty without an objective.
  AffineMatrix objective;
};

class DefinitionReader {
 public:
  explicit DefinitionReader(const std::string& text) : text_(text) {}

  ReadDefinition read() {
    skip_space();
    while (at_ < text_.size()) statement();
    return std::move(read_);
  }

 private:
  [[noreturn]] void refuse(const std::string& why) const {
    throw std::runtime_error(why + " at " + text_.substr(at_, 40));
  }

  void skip_space() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\n')) ++at_;
  }

  bool take(const std::string& word) {
    if (text_.compare(at_, word.size(), word) != 0) return false;
    at_ += word.size();
    skip_space();
    return true;
  }

  void need(const std::string& word) {
    if (!take(word)) refuse("expected " + word);
  }

  std::string name() {
    const std::size_t start = at_;
    while (at_ < text_.size() && std::isalnum(static_cast<unsigned char>(text_[at_])) != 0) ++at_;
    if (start == at_) refuse("expected a name");
    std::string found = text_.substr(start, at_ - start);
    skip_space();
    return found;
  }

  void statement() {
    if (take("variable ")) {
      declare(name());
    } else if (take("maximize ")) {
      name();
      need("=");
      read_.objective = expression();
    } else {
      assignment_or_relation();
    }
    need(";");
  }

  // The same variable may be declared again.
  void declare(const std::string& variable) {
    read_.variables.push_back(variable);
    read_.values[variable] = {{{{variable, 1.0}}}};
  }

  void assignment_or_relation() {
    const std::size_t start = at_;
    if (std::isalpha(static_cast<unsigned char>(text_[at_])) != 0) {
      const std::string target = name();
      if (take("=")) {
        read_.values[target] = expression();
        return;
      }
      at_ = start;
    }
    Relation relation;
    relation.left = expression();
    for (const char* sign : {">=", "<=", ">", "<"}) {
      if (!take(sign)) continue;
      relation.sign = sign;
      relation.right = expression();
      read_.relations.push_back(relation);
      return;
    }
    refuse("expected a relation");
  }

  AffineMatrix expression() {
    AffineMatrix sum = term();
    for (;;) {
      if (take("+")) {
        sum = added(sum, term(), 1.0);
      } else if (take("-")) {
        sum = added(sum, term(), -1.0);
      } else {
        return sum;
      }
    }
  }

  AffineMatrix term() {
    AffineMatrix product = factor();
    for (;;) {
      if (take("*")) {
        product = multiplied(product, factor());
      } else if (take("/")) {
        product = scaled(product, 1.0 / constant(factor()));
      } else {
        return product;
      }
    }
  }

  AffineMatrix factor() {
    if (take("+")) return factor();
    if (take("-")) return scaled(factor(), -1.0);
    if (take("(")) {
      AffineMatrix inner = expression();
      need(")");
      return inner;
    }
    if (take("[")) return blocks();
    if (take("zeros(")) {
      const auto rows = static_cast<std::size_t>(constant(expression()));
      need(",");
      const auto columns = static_cast<std::size_t>(constant(expression()));
      need(")");
      return AffineMatrix(rows, std::vector<Affine>(columns));
    }
    if (take("eye(")) {
      const auto size = static_cast<std::size_t>(constant(expression()));
      need(")");
      AffineMatrix unit(size, std::vector<Affine>(size));
      for (std::size_t i = 0; i < size; ++i) unit[i][i][""] = 1.0;
      return unit;
    }
    if (std::isalpha(static_cast<unsigned char>(text_[at_])) != 0) {
      const std::string used = name();
      const auto found = read_.values.find(used);
      if (found == read_.values.end()) refuse("unknown name " + used);
      return found->second;
    }
    return number();
  }

  AffineMatrix number() {
    char* end = nullptr;
    const double value = std::strtod(text_.c_str() + at_, &end);
    const auto length = static_cast<std::size_t>(end - (text_.c_str() + at_));
    if (length == 0) refuse("expected a number");
    at_ += length;
    skip_space();
    return {{{{"", value}}}};
  }

  AffineMatrix blocks() {
    AffineMatrix all;
    do {
      AffineMatrix row = expression();
      while (take(",")) {
        const AffineMatrix next = expression();
        if (next.size() != row.size()) refuse("blocks of different heights");
        for (std::size_t r = 0; r < row.size(); ++r) {
          row[r].insert(row[r].end(), next[r].begin(), next[r].end());
        }
      }
      if (!all.empty() && !row.empty() && all[0].size() != row[0].size()) {
        refuse("block rows of different widths");
      }
      all.insert(all.end(), row.begin(), row.end());
    } while (take(";"));
    need("]");
    return all;
  }

  AffineMatrix added(AffineMatrix a, const AffineMatrix& b, double factor) {
    if (a.size() != b.size() || a[0].size() != b[0].size()) refuse("sum of different shapes");
    for (std::size_t r = 0; r < a.size(); ++r) {
      for (std::size_t c = 0; c < a[r].size(); ++c) {
        for (const auto& [variable, value] : b[r][c]) a[r][c][variable] += factor * value;
      }
    }
    return a;
  }

  static AffineMatrix scaled(AffineMatrix a, double factor) {
    for (std::vector<Affine>& row : a) {
      for (Affine& entry : row) {
        for (auto& [variable, value] : entry) value *= factor;
      }
    }
    return a;
  }

  // One factor is a scalar and one is constant; more is never written.
  AffineMatrix multiplied(const AffineMatrix& a, const AffineMatrix& b) {
    if (is_constant_scalar(a)) return scaled(b, constant(a));
    if (is_constant_scalar(b)) return scaled(a, constant(b));
    const AffineMatrix& scalar = a.size() == 1 ? a : b;
    const AffineMatrix& matrix = a.size() == 1 ? b : a;
    if (scalar.size() != 1 || scalar[0].size() != 1) refuse("product of matrices");
    AffineMatrix product = matrix;
    for (std::vector<Affine>& row : product) {
      for (Affine& entry : row) {
        const double factor = entry[""];
        if (entry.size() != 1) refuse("product of variables");
        entry = factor == 0.0 ? Affine{} : scaled(scalar, factor)[0][0];
      }
    }
    return product;
  }

  static bool is_constant_scalar(const AffineMatrix& a) {
    return a.size() == 1 && a[0].size() == 1 && a[0][0].size() == 1 && a[0][0].count("") == 1;
  }

  double constant(const AffineMatrix& a) const {
    if (!is_constant_scalar(a)) refuse("expected a constant");
    return a[0][0].at("");
  }

  const std::string& text_;
  std::size_t at_ = 0;
  ReadDefinition read_;
};

}  // namespace unit_test
