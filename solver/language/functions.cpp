#include "solver/language/functions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "solver/language/arithmetic.h"
#include "solver/language/language_error.h"
#include "solver/language/limits.h"

namespace sdpsol {
namespace {

struct Signature {
  std::string_view name;
  Function function;
  std::size_t min_arguments;
  std::size_t max_arguments;
  const char* usage;
};

constexpr std::array<Signature, 6> kSignatures = {{
    {"zeros", Function::kZeros, 1, 2, "zeros(rows, columns) or zeros(size)"},
    {"ones", Function::kOnes, 1, 2, "ones(rows, columns) or ones(size)"},
    {"eye", Function::kEye, 1, 1, "eye(size)"},
    {"diag", Function::kDiag, 1, 1, "diag(vector) or diag(square matrix)"},
    {"trace", Function::kTrace, 1, 1, "trace(square matrix)"},
    {"sum", Function::kSum, 1, 1, "sum(matrix)"},
}};

const Signature& signature_of(Function function) {
  return kSignatures[static_cast<std::size_t>(function)];
}

std::int32_t size_argument(const Operand& argument) {
  return whole_number(argument, "a size", 1, kMaxDimension);
}

AffineMatrix zeros(const std::vector<Operand>& sizes) {
  return {size_argument(sizes.front()), size_argument(sizes.back()), {}};
}

AffineMatrix ones(const std::vector<Operand>& sizes, Span at) {
  const std::int32_t rows = size_argument(sizes.front());
  const std::int32_t columns = size_argument(sizes.back());
  if (std::int64_t{rows} * columns > kMaxGeneratedEntries) {
    throw LanguageError(at, "a matrix of ones has at most " + std::to_string(kMaxGeneratedEntries) +
                                " entries, this is " + std::to_string(rows) + "x" +
                                std::to_string(columns));
  }
  return spread(constant(1), rows, columns, at);
}

AffineMatrix eye(std::int32_t size) {
  AffineMatrix result{size, size, {}};
  result.terms.reserve(static_cast<std::size_t>(size));
  for (std::int32_t i = 0; i < size; ++i) result.terms.push_back({i, i, kConstant, 1, 1});
  return result;
}

void require_square(const Operand& argument, const char* name) {
  if (argument.value.rows == argument.value.columns) return;
  throw LanguageError(argument.span, std::string(name) + " needs a square matrix, this is " +
                                         shape_text(argument.value));
}

AffineMatrix diag(Operand argument) {
  AffineMatrix& value = argument.value;
  if (is_scalar(value)) return std::move(value);
  if (value.rows == 1 || value.columns == 1) {
    const std::int32_t size = std::max(value.rows, value.columns);
    value.rows = size;
    value.columns = size;
    for (AffineTerm& term : value.terms) {
      const std::int32_t i = std::max(term.row, term.column);
      term.row = i;
      term.column = i;
    }
    return std::move(value);
  }
  if (value.rows != value.columns) {
    throw LanguageError(argument.span,
                        "diag needs a vector or a square matrix, this is " + shape_text(value));
  }
  std::erase_if(value.terms, [](const AffineTerm& term) { return term.row != term.column; });
  for (AffineTerm& term : value.terms) term.column = 0;
  value.columns = 1;
  return std::move(value);
}

AffineMatrix sum(AffineMatrix value) {
  for (AffineTerm& term : value.terms) {
    term.row = 0;
    term.column = 0;
  }
  value.rows = 1;
  value.columns = 1;
  return value;
}

AffineMatrix trace(Operand argument) {
  require_square(argument, "trace");
  std::erase_if(argument.value.terms,
                [](const AffineTerm& term) { return term.row != term.column; });
  return sum(std::move(argument.value));
}

}  // namespace

std::optional<Function> function_named(std::string_view name) {
  for (const Signature& signature : kSignatures) {
    if (signature.name == name) return signature.function;
  }
  return std::nullopt;
}

std::string function_names() {
  std::string names;
  for (const Signature& signature : kSignatures) {
    if (&signature != &kSignatures.front())
      names += &signature == &kSignatures.back() ? " and " : ", ";
    names += signature.name;
  }
  return names;
}

AffineMatrix call_function(Function function, std::vector<Operand> arguments, Span at) {
  const Signature& signature = signature_of(function);
  if (arguments.size() < signature.min_arguments || arguments.size() > signature.max_arguments) {
    throw LanguageError(at, std::string(signature.name) + " does not take " +
                                count_text(arguments.size(), "argument") + "; it is written " +
                                signature.usage);
  }
  switch (function) {
    case Function::kZeros:
      return zeros(arguments);
    case Function::kOnes:
      return ones(arguments, at);
    case Function::kEye:
      return eye(size_argument(arguments.front()));
    case Function::kDiag:
      return diag(std::move(arguments.front()));
    case Function::kTrace:
      return trace(std::move(arguments.front()));
    case Function::kSum:
      return sum(std::move(arguments.front().value));
  }
  return {};
}

AffineMatrix element_of(const AffineMatrix& collected, std::int32_t row, std::int32_t column) {
  const auto place = std::pair(row, column);
  const auto before = [](const AffineTerm& term, const std::pair<std::int32_t, std::int32_t>& p) {
    return std::pair(term.row, term.column) < p;
  };
  AffineMatrix result{1, 1, {}};
  for (auto term = std::lower_bound(collected.terms.begin(), collected.terms.end(), place, before);
       term != collected.terms.end() && term->row == row && term->column == column; ++term) {
    result.terms.push_back({0, 0, term->unknown, term->value, term->magnitude});
  }
  return result;
}

}  // namespace sdpsol
