#include "solver/language/symbols.h"

#include <utility>

namespace sdpsol {

const Symbol* SymbolTable::find(std::string_view name) const {
  const auto found = symbols_.find(name);
  return found == symbols_.end() ? nullptr : &found->second;
}

void SymbolTable::set(std::string_view name, Symbol symbol) {
  Symbol& held = symbols_[name];
  held_terms_ += symbol.value.terms.size();
  held_terms_ -= held.value.terms.size();
  held = std::move(symbol);
}

}  // namespace sdpsol
