#include "fuzz/definition_grammar.h"

namespace fuzz {
namespace {

std::string sized(std::string_view function, int rows, int columns) {
  return std::string(function) + "(" + std::to_string(rows) + "," + std::to_string(columns) + ")";
}

}  // namespace

std::string_view DefinitionGrammar::preamble() {
  return "variable x,y,z,u(2,1),P(2,2) symmetric,D(3,3) diagonal,X(2,2);\n"
         "A=[0,1;-2,-1];\nb=[1;-0.5];\nC=[1,0,0.3;0,2,0;0.3,0,1];\n";
}

std::string DefinitionGrammar::one_of(std::initializer_list<std::string_view> texts) {
  return std::string(texts.begin()[pick(texts.size())]);
}

std::string DefinitionGrammar::number() {
  if (pick(3) == 0) return one_of({"0", "1", "1.", ".5", "2", "3", "1e-6", "4.4e-6", "0.1"});
  if (pick(8) == 0)
    return one_of({"1e-13", "1e-300", "1e300", "15000", "0.333333", "1e16", "1e-12", "123456"});
  return std::to_string(pick(10)) + "." + std::to_string(pick(1000));
}

std::string DefinitionGrammar::relation() {
  return one_of({" > ", " >= ", " < ", " <= ", " == ", ">", "<"});
}

std::string DefinitionGrammar::leaf(int rows, int columns) {
  if (rows == 1 && columns == 1)
    return one_of({"x", "y", "z", "x", "y", "u(1,1)", "P(1,2)", "D(2,2)", "X(2,1)"});
  if (rows == 2 && columns == 1) return one_of({"u", "u", "[x;y]"});
  if (rows == 1 && columns == 2) return one_of({"u'", "[x,z]"});
  if (rows == 2 && columns == 2)
    return one_of({"P", "P", "X", "[x,y;y,z]", "diag(u)", "x*eye(2)", "(X+X')"});
  if (rows == 3 && columns == 3) return one_of({"D", "y*C", "z*eye(3)", "x*ones(3,3)"});
  return literal(rows, columns, 0);
}

std::string DefinitionGrammar::constant(int rows, int columns) {
  if (rows == 1 && columns == 1) return number();
  if (rows == 2 && columns == 1 && pick(2) == 0) return "b";
  if (rows == 2 && columns == 2 && pick(2) == 0) return one_of({"A", "eye(2)", "A'", "zeros(2)"});
  if (rows == 3 && columns == 3) return one_of({"C", "eye(3)", "ones(3)", "zeros(3,3)"});
  return sized(one_of({"ones", "zeros", "eye"}) == "ones" ? "ones" : "zeros", rows, columns);
}

std::string DefinitionGrammar::literal(int rows, int columns, int depth) {
  std::string text = "[";
  for (int i = 0; i < rows; ++i) {
    if (i > 0) text += ";";
    for (int j = 0; j < columns; ++j) {
      if (j > 0) text += ",";
      text += depth > 0 ? expression(1, 1, depth - 1) : one_of({"x", "y", "0", "1", "z", "-2"});
    }
  }
  return text + "]";
}

std::string DefinitionGrammar::expression(int rows, int columns, int depth) {
  if (depth <= 0) return pick(3) == 0 ? constant(rows, columns) : leaf(rows, columns);
  const auto inner = [&] { return expression(rows, columns, depth - 1); };
  const bool scalar = rows == 1 && columns == 1;
  switch (pick(11)) {
    case 0:
      return inner() + one_of({"+", "-", " - ", "+-"}) + inner();
    case 1:
      return number() + "*(" + inner() + ")";
    case 2:
      return "(" + inner() + ")/" + one_of({"2", "0.3", "(1+1)", "1e3"});
    case 3:
      return "-(" + inner() + ")";
    case 4:
      return "(" + expression(columns, rows, depth - 1) + ")'";
    case 5:
      return constant(rows, 2) + "*(" + expression(2, columns, depth - 1) + ")";
    case 6:
      return scalar ? one_of({"trace(", "sum("}) + expression(2, 2, depth - 1) + ")" : inner();
    case 7: {
      // The sums that have a short way of their own.
      if (!scalar) return literal(rows, columns, depth);
      std::string sum;
      for (std::size_t terms = 1 + pick(5); terms > 0; --terms)
        sum += one_of({"+", "-", "+-", " +"}) + number() + "*" + one_of({"x", "y", "z", "x"});
      return sum;
    }
    case 8:
      return literal(rows, columns, depth);
    default:
      return inner();
  }
}

std::string DefinitionGrammar::symmetric(int size) {
  if (size == 2 && pick(3) == 0) return "A'*P+P*A";
  if (size == 2 && pick(2) == 0) {
    const std::string off = expression(1, 1, 1);
    return "[" + expression(1, 1, 2) + "," + off + ";" + off + "," + expression(1, 1, 2) + "]";
  }
  if (size == 2) return one_of({"P", "X+X'", "diag(u)", "x*A+x*A'"}) + "+" + number() + "*eye(2)";
  return one_of({"D", "C-D", "x*C+D", "y*C"}) + "-" + number() + "*eye(3)";
}

std::string DefinitionGrammar::statement() {
  switch (pick(8)) {
    case 0:
      return one_of({"s", "t", "x0", "A"}) + "=" + expression(1, 1, 3) + ";\n";
    case 1:
      return one_of({"maximize", "minimize"}) + " o = " + expression(1, 1, 2) + ";\n";
    case 2:
      return one_of({"BIGM", "MAXITER", "ABSTOL", "NU"}) + "=" + number() + ";\n";
    case 3:
      return symmetric(static_cast<int>(2 + pick(2))) + relation() + "0;\n";
    case 4:
      return expression(2, 1, 2) + relation() + one_of({"0", "b", "1", "u"}) + ";\n";
    case 5:
      return number() + relation() + expression(1, 1, 2) + relation() + number() + ";\n";
    default:
      return expression(1, 1, 3) + relation() + expression(1, 1, 1) + ";\n";
  }
}

std::string DefinitionGrammar::definition() {
  std::string text(preamble());
  for (std::size_t statements = 1 + pick(6); statements > 0; --statements) text += statement();
  return text;
}

}  // namespace fuzz
