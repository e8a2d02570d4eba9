#include "solver/exchange/sdpa_header.h"

#include <cstddef>
#include <string>
#include <utility>

#include "solver/language/language_error.h"
#include "solver/language/limits.h"

namespace sdpsol {
namespace {

// Each block has a row at least, so there are no more blocks than rows.
constexpr std::int64_t kMaxUnknowns = kMaxGeneratedEntries;
constexpr std::int64_t kMaxRows = kMaxGeneratedEntries;

class HeaderReader {
 public:
  HeaderReader(SdpaScanner& scanner, Diagnostics& diagnostics)
      : scanner_(scanner), diagnostics_(diagnostics) {}

  std::optional<SdpaHeader> read() {
    const std::size_t errors_before = diagnostics_.error_count();
    try {
      header_.unknowns = read_count("the number of unknowns", 0, kMaxUnknowns);
      header_.unknowns_given = scanner_.span();
      remark_on_rest_of_line("the number of unknowns");
      block_count_ = read_count("the number of blocks", 1, kMaxRows);
      header_.block_count_given = scanner_.span();
      remark_on_rest_of_line("the number of blocks");
      read_sizes();
      // A list that is wrong may have swallowed the next one.
      if (diagnostics_.error_count() == errors_before) read_costs();
    } catch (const LanguageError& error) {
      diagnostics_.add(error.diagnostic);
    }
    if (diagnostics_.error_count() > errors_before) return std::nullopt;
    return std::move(header_);
  }

 private:
  LanguageError ends_before(const std::string& expected) const {
    return LanguageError(scanner_.end_of_text(),
                         "expected " + expected + ", found the end of the text");
  }

  std::int32_t read_count(const std::string& what, std::int64_t low, std::int64_t high) {
    if (!scanner_.next()) throw ends_before(what);
    const std::optional<std::int64_t> value = scan_whole(scanner_.word());
    if (value && *value >= low && *value <= high) return static_cast<std::int32_t>(*value);
    throw LanguageError(scanner_.span(), what + " must be a whole number from " +
                                             std::to_string(low) + " to " + std::to_string(high) +
                                             ", this is " + in_quotes(scanner_.word()));
  }

  // Whatever stands there is a comment; but a number looks as if it were meant.
  void remark_on_rest_of_line(const std::string& what) {
    if (scanner_.next_on_line() && resembles_number(scanner_.word())) {
      Diagnostic note;
      note.severity = Diagnostic::Severity::kNote;
      note.span = scanner_.span();
      note.message = "what stands behind " + what + " is a comment, also this number";
      diagnostics_.add(std::move(note));
    }
    scanner_.skip_line();
  }

  // Behind a list nothing is read over that may belong to it.
  void finish_list_line(const std::string& complaint, Span given, const std::string& note) {
    if (diagnostics_.full()) return;
    if (scanner_.next_on_line() && resembles_number(scanner_.word())) {
      diagnostics_.add(LanguageError(scanner_.span(), complaint).with_note(given, note).diagnostic);
    }
    scanner_.skip_line();
  }

  void read_sizes() {
    const auto wanted = static_cast<std::size_t>(block_count_);
    std::int64_t rows = 0;
    for (std::size_t b = 0; b < wanted && !diagnostics_.full(); ++b) {
      if (!scanner_.next()) {
        throw ends_before("the size of block " + std::to_string(b + 1) + " of " +
                          std::to_string(wanted));
      }
      header_.blocks.push_back(read_size());
      rows += header_.blocks.back().size;
      if (rows > kMaxRows) {
        throw LanguageError(scanner_.span(), "with this block all blocks together have " +
                                                 std::to_string(rows) + " rows; at most " +
                                                 std::to_string(kMaxRows) + " are allowed");
      }
    }
    finish_list_line("more sizes than the number of blocks, " + std::to_string(wanted),
                     header_.block_count_given, "the number of blocks is given here");
  }

  SdpaBlock read_size() {
    const std::optional<std::int64_t> size = scan_whole(scanner_.word());
    if (size && *size > 0 && *size <= kMaxDimension) {
      return {static_cast<std::int32_t>(*size), *size == 1, scanner_.span()};
    }
    if (size && *size < 0 && *size >= -kMaxRows) {
      return {static_cast<std::int32_t>(-*size), true, scanner_.span()};
    }
    diagnostics_.add(
        LanguageError(scanner_.span(),
                      "the size of a block must be a whole number from 1 to " +
                          std::to_string(kMaxDimension) + ", or of a diagonal block from -1 to -" +
                          std::to_string(kMaxRows) + "; this is " + in_quotes(scanner_.word()))
            .diagnostic);
    return {};
  }

  void read_costs() {
    const auto wanted = static_cast<std::size_t>(header_.unknowns);
    if (wanted == 0) return;
    while (header_.costs.size() < wanted && !diagnostics_.full()) {
      if (!scanner_.next()) {
        throw ends_before("number " + std::to_string(header_.costs.size() + 1) +
                          " of the objective, which has " + count_text(wanted, "number"));
      }
      header_.costs.push_back({read_cost(), scanner_.span()});
    }
    finish_list_line("the objective has " + count_text(wanted, "number") +
                         ", one for each unknown; entries begin on a new line",
                     header_.unknowns_given, "the number of unknowns is given here");
  }

  double read_cost() {
    try {
      return sdpa_number(scanner_);
    } catch (const LanguageError& error) {
      diagnostics_.add(error.diagnostic);
      return 0;
    }
  }

  SdpaScanner& scanner_;
  Diagnostics& diagnostics_;
  SdpaHeader header_;
  std::int32_t block_count_ = 0;
};

}  // namespace

std::optional<SdpaHeader> read_sdpa_header(SdpaScanner& scanner, Diagnostics& diagnostics) {
  return HeaderReader(scanner, diagnostics).read();
}

double sdpa_number(const SdpaScanner& scanner) {
  const ScannedNumber scanned = scan_real(scanner.word());
  if (scanned.status == ScannedNumber::Status::kNumber) return scanned.value;
  const bool too_large = scanned.status == ScannedNumber::Status::kOverflow;
  throw LanguageError(
      scanner.span(),
      in_quotes(scanner.word()) + (too_large ? " is too large for a number"
                                   : is_nan_or_infinity(scanner.word()) ? " is not a finite number"
                                                                        : " is not a number"));
}

}  // namespace sdpsol
