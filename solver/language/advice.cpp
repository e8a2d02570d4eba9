#include "solver/language/advice.h"

#include <array>

#include "solver/language/characters.h"
#include "solver/language/diagnostics.h"
#include "solver/language/functions.h"

namespace sdpsol {
namespace {

struct Sign {
  std::string_view bytes;
  std::size_t blamed = 0;  ///< which of the bytes the error points at
  std::string_view advice;
};

constexpr std::string_view kAtMost = "; 'at most' is written '<='";
constexpr std::string_view kAtLeast = "; 'at least' is written '>='";
constexpr std::string_view kUnequal = "; there is no relation 'not equal'";
constexpr std::string_view kComment = "; a comment begins with '%'";
constexpr std::string_view kNotFinite = "; this is not a finite number";
constexpr std::string_view kPower =
    "; there are no powers: expressions are affine in the variables";
constexpr std::string_view kInvisible = "; this is a special blank: write an ordinary one";

constexpr std::array<Sign, 32> kSigns = {{
    {"=<", 1, kAtMost},
    {"=>", 1, kAtLeast},
    {"<>", 1, kUnequal},
    {"!=", 0, kUnequal},
    {"~=", 0, kUnequal},
    {"===", 2, "; an equation is written '=='"},
    {":=", 0, "; an assignment is written '='"},
    {":", 0, "; there are no ranges: an element is A(row, column)"},
    {"//", 0, kComment},
    {"//", 1, kComment},
    {"/*", 0, kComment},
    {"/*", 1, kComment},
    {"#IND", 0, kNotFinite},
    {"#INF", 0, kNotFinite},
    {"#QNAN", 0, kNotFinite},
    {"#", 0, kComment},
    {"^", 0, kPower},
    {"**", 1, kPower},
    {".*", 0, "; there are no element-by-element products"},
    {"&", 0, "; each relation is a statement of its own"},
    {"{", 0, "; a matrix is written in '[' and ']'"},
    {"\xE2\x89\xA4", 0, kAtMost},                         // U+2264
    {"\xE2\x89\xA5", 0, kAtLeast},                        // U+2265
    {"\xE2\x89\xA0", 0, kUnequal},                        // U+2260
    {"\xE2\x88\x92", 0, "; this is not the minus '-'"},   // U+2212
    {"\xE2\x80\x93", 0, "; this is not the minus '-'"},   // U+2013
    {"\xC2\xB7", 0, "; a product is written '*'"},        // U+00B7
    {"\xC3\x97", 0, "; a product is written '*'"},        // U+00D7
    {"\xE2\x80\x99", 0, "; the transpose is written '"},  // U+2019
    {"\xC2\xA0", 0, kInvisible},                          // U+00A0
    {"\xE2\x80\x8B", 0, kInvisible},                      // U+200B
    {"\xEF\xBB\xBF", 0, kInvisible},                      // U+FEFF
}};

struct Misspelling {
  std::string_view word;
  std::string_view keyword;
};

constexpr std::array<Misspelling, 13> kMisspellings = {{
    {"variable", "variable"},
    {"variables", "variable"},
    {"var", "variable"},
    {"maximize", "maximize"},
    {"maximise", "maximize"},
    {"max", "maximize"},
    {"minimize", "minimize"},
    {"minimise", "minimize"},
    {"min", "minimize"},
    {"symmetric", "symmetric"},
    {"sym", "symmetric"},
    {"diagonal", "diagonal"},
    {"diag", "diagonal"},
}};

}  // namespace

std::string_view advice_on_sign(std::string_view text, std::size_t offset) {
  for (const Sign& sign : kSigns) {
    if (offset >= sign.blamed && text.substr(offset - sign.blamed).starts_with(sign.bytes)) {
      return sign.advice;
    }
  }
  return "";
}

std::string_view keyword_meant(std::string_view word) {
  for (const Misspelling& known : kMisspellings) {
    if (equal_but_for_case(word, known.word)) return known.keyword;
  }
  return "";
}

std::string advice_on_name(std::string_view name, bool as_function, std::string_view similar) {
  if (!similar.empty()) return "; " + in_quotes(similar) + " is: case matters in names";
  if (!as_function) return "";
  if (equal_but_for_case(name, "transpose")) return "; the transpose of A is written A'";
  return "; the functions are " + function_names();
}

bool begins_foreign_comment(std::string_view text, std::size_t offset) {
  const std::string_view rest = text.substr(offset);
  return rest.starts_with('#') || rest.starts_with("//") || rest.starts_with("/*");
}

bool closes_what_is_not_open(std::string_view rest) {
  int open = 0;
  for (const char c : rest.substr(0, rest.find_first_of(";%\n"))) {
    if (c == '(') ++open;
    if (c == ')' && --open < 0) return true;
  }
  return false;
}

}  // namespace sdpsol
