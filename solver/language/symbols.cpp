#include "solver/language/symbols.h"

#include <utility>

#include "solver/language/characters.h"

namespace sdpsol {

const Symbol* SymbolTable::find(std::string_view name) const {
  if (likely_ >= entries_.size() || entries_[likely_].name != name) {
    const auto found = numbers_.find(name);
    if (found == numbers_.end()) return nullptr;
    likely_ = found->second;
  }
  return &entries_[likely_++].symbol;
}

std::string_view SymbolTable::similar(std::string_view name) const {
  std::string_view first;
  for (const Entry& entry : entries_) {
    const bool missing = entry.symbol.kind == Symbol::Kind::kMissing;
    if (missing || !equal_but_for_case(entry.name, name)) continue;
    if (first.empty() || entry.name < first) first = entry.name;
  }
  return first;
}

void SymbolTable::set(std::string_view name, Symbol symbol) {
  const auto [place, is_new] = numbers_.try_emplace(name, entries_.size());
  if (is_new) entries_.push_back({name, {}});
  Symbol& held = entries_[place->second].symbol;
  held_terms_ += symbol.value.terms.size();
  held_terms_ -= held.value.terms.size();
  held = std::move(symbol);
}

}  // namespace sdpsol
