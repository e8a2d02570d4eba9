// The entries of a file in the SDPA sparse format.
#pragma once

#include <cstdint>
#include <vector>

#include "solver/exchange/sdpa_header.h"
#include "solver/exchange/sdpa_scanner.h"
#include "solver/language/affine_matrix.h"
#include "solver/language/diagnostics.h"

namespace sdpsol {

/// One entry of one coefficient matrix. Everything counts from 0.
struct SdpaEntry {
  std::int32_t block = 0;
  std::int32_t row = 0;
  std::int32_t column = 0;
  std::int32_t unknown = kConstant;  ///< kConstant: of F_0, else of F_(unknown + 1)
  double value = 0;                  ///< as written, also for F_0
  std::uint32_t begin = 0;           ///< where in the text the entry begins
};

/// Reads the entries up to the end of the text, in its order. An entry off the
/// diagonal comes out twice, on either side of it.
/// Errors are added to `diagnostics`; reading goes on behind the word that is wrong.
std::vector<SdpaEntry> read_sdpa_entries(SdpaScanner& scanner, const SdpaHeader& header,
                                         Diagnostics& diagnostics);

/// Sorts by block, row, column, unknown; what shares all four keeps its order.
/// Cost: linear in the entries and in what `header` declares.
void sort_sdpa_entries(std::vector<SdpaEntry>& entries, const SdpaHeader& header);

/// Complains of every entry that an earlier one has given already.
/// @param entries sorted.
void report_repeated_entries(const std::vector<SdpaEntry>& entries, std::string_view text,
                             Diagnostics& diagnostics);

/// The place of the entry that begins at `begin`.
Span sdpa_entry_span(std::string_view text, std::uint32_t begin);

}  // namespace sdpsol
