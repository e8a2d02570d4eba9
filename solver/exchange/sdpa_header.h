// What stands before the entries of a file in the SDPA sparse format: how many
// unknowns, how many blocks, the size of each block, the objective.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "solver/exchange/sdpa_scanner.h"
#include "solver/language/diagnostics.h"

namespace sdpsol {

struct SdpaBlock {
  std::int32_t size = 1;
  bool diagonal = false;  ///< only entries (i,i); so is every block of size 1
  Span declared;          ///< its size
};

struct SdpaCost {
  double value = 0;
  Span where;
};

struct SdpaHeader {
  std::int32_t unknowns = 0;
  Span unknowns_given;
  Span block_count_given;
  std::vector<SdpaBlock> blocks;
  std::vector<SdpaCost> costs;  ///< one for each unknown
};

/// Reads up to the end of the line on which the objective ends.
/// @return nothing when there was an error; each is added to `diagnostics`.
/// Memory: what the words of the text need, whatever sizes they claim.
std::optional<SdpaHeader> read_sdpa_header(SdpaScanner& scanner, Diagnostics& diagnostics);

/// The number that the current word is. @throws LanguageError if it is none.
double sdpa_number(const SdpaScanner& scanner);

}  // namespace sdpsol
