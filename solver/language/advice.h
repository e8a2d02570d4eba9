// What the notations that authors come from write where this language writes
// something else: errors say so.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sdpsol {

/// How the sign at `offset` of a text, which means nothing here, is written in this
/// language; "" where no advice is known. Else it begins with "; ".
std::string_view advice_on_sign(std::string_view text, std::size_t offset);

/// The keyword that `word` is a misspelling or an abbreviation of, or "".
std::string_view keyword_meant(std::string_view word);

/// Advice on `name`, which is not defined and is used like a function or not.
/// @param similar a defined name that differs in case only, or "".
/// @return "" or a text that begins with "; ".
std::string advice_on_name(std::string_view name, bool as_function, std::string_view similar);

/// Whether another language's comment begins at `offset`.
bool begins_foreign_comment(std::string_view text, std::size_t offset);

/// Whether the text up to the next ";", comment or line break closes a parenthesis
/// that it does not open: "sum(1;2)" has its error at the ";", and what follows there
/// is no statement.
bool closes_what_is_not_open(std::string_view rest);

}  // namespace sdpsol
