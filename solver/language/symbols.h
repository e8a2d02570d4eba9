// What each name of a definition stands for, at the point that has been read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "solver/language/affine_matrix.h"
#include "solver/language/diagnostics.h"
#include "solver/language/source.h"

namespace sdpsol {

struct Symbol {
  enum class Kind {
    kVariable,
    kAssigned,
    kParameter,
    kFailed,   ///< its definition was in error: uses of it are not reported again
    kMissing,  ///< was used without a definition, which has been reported
  };
  Kind kind = Kind::kAssigned;
  AffineMatrix value;        ///< terms collected
  Span defined;              ///< the name where it was declared or last assigned
  std::size_t variable = 0;  ///< of a kVariable: its index in the model
  std::size_t complaint = Diagnostics::kNowhere;  ///< of a kMissing: the report
};

/// Names are views into the source text, which must outlive the table.
class SymbolTable {
 public:
  SymbolTable() { numbers_.max_load_factor(0.5F); }
  /// Null where the name has never been seen. The symbol stays where it is until
  /// the next set().
  const Symbol* find(std::string_view name) const;
  void set(std::string_view name, Symbol symbol);
  /// A name that differs from this one in case only, else "".
  std::string_view similar(std::string_view name) const;
  /// Terms of all values together.
  std::size_t held_terms() const { return held_terms_; }

 private:
  struct Entry {
    std::string_view name;
    Symbol symbol;
  };

  // FNV-1a: names are a few bytes long.
  struct Hash {
    std::size_t operator()(std::string_view name) const {
      std::uint64_t hash = 0xcbf29ce484222325U;
      for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
      return hash;
    }
  };

  std::vector<Entry> entries_;  ///< in the order in which they were first set
  std::unordered_map<std::string_view, std::size_t, Hash> numbers_;
  /// Sums name their unknowns in the order of declaration: this entry is likely
  /// to be the next that is asked for, and most searches end there.
  mutable std::size_t likely_ = 0;
  std::size_t held_terms_ = 0;
};

}  // namespace sdpsol
