#include "solver/language/symbols.h"

#include <utility>

#include "solver/language/advice.h"

namespace sdpsol {

const Symbol* SymbolTable::find(std::string_view name) const {
  const auto found = symbols_.find(name);
  return found == symbols_.end() ? nullptr : &found->second;
}

std::string_view SymbolTable::similar(std::string_view name) const {
  std::string_view first;
  for (const auto& [known, symbol] : symbols_) {
    if (symbol.kind == Symbol::Kind::kMissing || !equal_but_for_case(known, name)) continue;
    if (first.empty() || known < first) first = known;
  }
  return first;
}

void SymbolTable::set(std::string_view name, Symbol symbol) {
  Symbol& held = symbols_[name];
  held_terms_ += symbol.value.terms.size();
  held_terms_ -= held.value.terms.size();
  held = std::move(symbol);
}

}  // namespace sdpsol
