#include "solver/exchange/sdpa_entries.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "solver/language/explain.h"
#include "solver/language/language_error.h"
#include "solver/language/limits.h"

namespace sdpsol {
namespace {

/// @param read the part of the entry that is there.
LanguageError ends_early(Span read, const char* missing) {
  LanguageError error({read.end, read.end},
                      std::string("this entry ends before its ") + missing +
                          "; an entry is matrix, block, row, column and value, on one line");
  error.diagnostic.ranges.push_back(read);
  return error;
}

class EntryReader {
 public:
  EntryReader(SdpaScanner& scanner, const SdpaHeader& header)
      : scanner_(scanner), header_(header) {}

  /// Reads the entry whose first word is the current one.
  SdpaEntry read(bool first_on_line) {
    SdpaEntry entry;
    entry.begin = scanner_.span().begin;
    if (!first_on_line && !scan_whole(scanner_.word())) {
      throw LanguageError(scanner_.span(), "expected another entry or the end of the line, found " +
                                               in_quotes(scanner_.word()));
    }
    entry.unknown = index(0, header_.unknowns,
                          [&] {
                            return Bounds{"the number of a matrix", header_.unknowns_given,
                                          "the number of unknowns is given here"};
                          }) -
                    1;
    next("block", entry.begin);
    entry.block = index(1, static_cast<std::int32_t>(header_.blocks.size()),
                        [&] {
                          return Bounds{"the number of a block", header_.block_count_given,
                                        "the number of blocks is given here"};
                        }) -
                  1;
    next("row", entry.begin);
    entry.row = index_in_block("row", entry.block);
    next("column", entry.begin);
    entry.column = index_in_block("column", entry.block);
    next("value", entry.begin);
    entry.value = sdpa_number(scanner_);
    check_diagonal(entry);
    if (entry.row > entry.column) std::swap(entry.row, entry.column);
    return entry;
  }

 private:
  void next(const char* what, std::uint32_t begin) {
    const std::uint32_t end = scanner_.span().end;
    if (scanner_.next_on_line()) return;
    throw ends_early({begin, end}, what);
  }

  /// What is said of a number beyond its bounds; composed only where it is.
  struct Bounds {
    std::string what;
    Span given;
    std::string note;
  };

  template <typename Describe>
  std::int32_t index(std::int32_t low, std::int32_t high, Describe describe) const {
    const std::optional<std::int64_t> value = scan_whole(scanner_.word());
    if (value && *value >= low && *value <= high) return static_cast<std::int32_t>(*value);
    const Bounds bounds = describe();
    throw LanguageError(scanner_.span(), bounds.what + " must be a whole number from " +
                                             std::to_string(low) + " to " + std::to_string(high) +
                                             ", this is " + in_quotes(scanner_.word()))
        .with_note(bounds.given, bounds.note);
  }

  std::int32_t index_in_block(const char* what, std::int32_t block) const {
    const SdpaBlock& declared = header_.blocks[static_cast<std::size_t>(block)];
    return index(1, declared.size,
                 [&] {
                   const std::string name = "block " + std::to_string(block + 1);
                   return Bounds{std::string("a ") + what + " of " + name, declared.declared,
                                 "the size of " + name + " is given here"};
                 }) -
           1;
  }

  void check_diagonal(const SdpaEntry& entry) const {
    const SdpaBlock& block = header_.blocks[static_cast<std::size_t>(entry.block)];
    if (!block.diagonal || entry.row == entry.column) return;
    const std::string name = "block " + std::to_string(entry.block + 1);
    throw LanguageError(
        {entry.begin, scanner_.span().end},
        name + " is diagonal and has no entry " + entry_text(entry.row, entry.column))
        .with_note(block.declared, "the size of " + name + " is given here");
  }

  SdpaScanner& scanner_;
  const SdpaHeader& header_;
};

// A stable sort by one key, which is below `keys`: counted, then dealt out.
template <typename Key>
void deal(std::vector<SdpaEntry>& entries, std::vector<SdpaEntry>& dealt, std::size_t keys,
          Key key) {
  if (keys < 2) return;
  std::vector<std::size_t> next(keys + 1, 0);
  for (const SdpaEntry& entry : entries) ++next[static_cast<std::size_t>(key(entry)) + 1];
  for (std::size_t k = 1; k <= keys; ++k) next[k] += next[k - 1];
  dealt.resize(entries.size());
  for (const SdpaEntry& entry : entries) {
    dealt[next[static_cast<std::size_t>(key(entry))]++] = entry;
  }
  entries.swap(dealt);
}

bool same_place(const SdpaEntry& a, const SdpaEntry& b) {
  return a.block == b.block && a.row == b.row && a.column == b.column && a.unknown == b.unknown;
}

}  // namespace

std::vector<SdpaEntry> read_sdpa_entries(SdpaScanner& scanner, const SdpaHeader& header,
                                         Diagnostics& diagnostics) {
  std::vector<SdpaEntry> entries;
  EntryReader reader(scanner, header);
  bool more = scanner.next();
  for (bool first_on_line = true; more && !diagnostics.full();) {
    try {
      entries.push_back(reader.read(first_on_line));
      if (entries.back().row != entries.back().column) {
        entries.push_back(entries.back());
        std::swap(entries.back().row, entries.back().column);
      }
      if (entries.size() > kMaxTerms) {
        diagnostics.add(LanguageError({entries.back().begin, scanner.span().end},
                                      "more than " + std::to_string(kMaxTerms) +
                                          " entries, those below the diagonal counted too")
                            .diagnostic);
        break;
      }
      first_on_line = false;
      if (scanner.next_on_line()) continue;
    } catch (const LanguageError& error) {
      diagnostics.add(error.diagnostic);
      scanner.skip_line();
    }
    first_on_line = true;
    more = scanner.next();
  }
  return entries;
}

void sort_sdpa_entries(std::vector<SdpaEntry>& entries, const SdpaHeader& header) {
  std::int32_t rows = 0;
  for (const SdpaBlock& block : header.blocks) rows = std::max(rows, block.size);
  const auto size = static_cast<std::size_t>(rows);
  std::vector<SdpaEntry> dealt;
  deal(entries, dealt, static_cast<std::size_t>(header.unknowns) + 1,
       [](const SdpaEntry& entry) { return entry.unknown + 1; });
  deal(entries, dealt, size, [](const SdpaEntry& entry) { return entry.column; });
  deal(entries, dealt, size, [](const SdpaEntry& entry) { return entry.row; });
  deal(entries, dealt, header.blocks.size(), [](const SdpaEntry& entry) { return entry.block; });
}

void report_repeated_entries(const std::vector<SdpaEntry>& entries, std::string_view text,
                             Diagnostics& diagnostics) {
  std::vector<std::pair<const SdpaEntry*, const SdpaEntry*>> repeated;  // and the first of them
  const SdpaEntry* first = nullptr;
  for (const SdpaEntry& entry : entries) {
    if (entry.row > entry.column) continue;
    if (first != nullptr && same_place(*first, entry)) {
      repeated.emplace_back(&entry, first);
    } else {
      first = &entry;
    }
  }
  std::sort(repeated.begin(), repeated.end(),
            [](const auto& a, const auto& b) { return a.first->begin < b.first->begin; });
  for (const auto& [entry, earlier] : repeated) {
    if (diagnostics.full()) return;
    std::string message = "entry " + entry_text(entry->row, entry->column) + " of block " +
                          std::to_string(entry->block + 1) + " in matrix " +
                          std::to_string(entry->unknown + 1) + " is given a second time";
    if (entry->row != entry->column) {
      message += "; " + entry_text(entry->column, entry->row) + " is the same entry";
    }
    diagnostics.add(LanguageError(sdpa_entry_span(text, entry->begin), std::move(message))
                        .with_note(sdpa_entry_span(text, earlier->begin), "it is given here first")
                        .diagnostic);
  }
}

Span sdpa_entry_span(std::string_view text, std::uint32_t begin) {
  constexpr int kWords = 5;
  SdpaScanner scanner(text, begin);
  for (int i = 0; i < kWords; ++i) scanner.next_on_line();
  return {begin, scanner.span().end};
}

}  // namespace sdpsol
