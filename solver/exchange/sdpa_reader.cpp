#include "solver/exchange/sdpa_reader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "solver/exchange/sdpa_entries.h"
#include "solver/exchange/sdpa_header.h"
#include "solver/exchange/sdpa_scanner.h"
#include "solver/language/text_check.h"

namespace sdpsol {
namespace {

std::vector<Variable> variables_of(const SdpaHeader& header) {
  std::vector<Variable> variables;
  variables.reserve(header.costs.size());
  for (const SdpaCost& cost : header.costs) {
    Variable variable;
    variable.first_unknown = static_cast<std::int32_t>(variables.size());
    variable.name = "x" + std::to_string(variables.size() + 1);
    variable.declared = cost.where;
    variables.push_back(std::move(variable));
  }
  return variables;
}

Objective objective_of(const SdpaHeader& header) {
  Objective objective;
  objective.maximize = false;
  objective.name = "objective";
  objective.value = {1, 1, {}};
  for (std::size_t k = 0; k < header.costs.size(); ++k) {
    const double cost = header.costs[k].value;
    if (cost == 0) continue;
    objective.value.terms.push_back({0, 0, static_cast<std::int32_t>(k), cost, std::fabs(cost)});
  }
  objective.where = header.costs.empty()
                        ? header.unknowns_given
                        : Span{header.costs.front().where.begin, header.costs.back().where.end};
  return objective;
}

/// @param entries of this block alone, sorted.
Condition condition_of(const SdpaBlock& block, const SdpaEntry* entries, const SdpaEntry* end,
                       std::string_view text) {
  Condition condition;
  condition.sense = Sense::kNonStrict;
  condition.is_matrix = !block.diagonal;
  condition.difference.rows = block.size;
  condition.difference.columns = block.diagonal ? 1 : block.size;
  condition.difference.terms.reserve(static_cast<std::size_t>(end - entries));
  std::uint32_t first = std::numeric_limits<std::uint32_t>::max();
  for (const SdpaEntry* entry = entries; entry != end; ++entry) {
    first = std::min(first, entry->begin);
    if (entry->value == 0) continue;
    condition.difference.terms.push_back(
        {entry->row, block.diagonal ? 0 : entry->column, entry->unknown,
         entry->unknown == kConstant ? -entry->value : entry->value, std::fabs(entry->value)});
  }
  condition.where = entries == end ? block.declared : sdpa_entry_span(text, first);
  return condition;
}

std::vector<Condition> conditions_of(const SdpaHeader& header,
                                     const std::vector<SdpaEntry>& entries, std::string_view text) {
  std::vector<Condition> conditions;
  conditions.reserve(header.blocks.size());
  const SdpaEntry* at = entries.data();
  const SdpaEntry* const end = at + entries.size();
  for (const SdpaBlock& block : header.blocks) {
    const auto number = static_cast<std::int32_t>(conditions.size());
    const SdpaEntry* const begin = at;
    while (at != end && at->block == number) ++at;
    conditions.push_back(condition_of(block, begin, at, text));
  }
  return conditions;
}

}  // namespace

std::optional<Model> read_sdpa(const Source& source, Diagnostics& diagnostics) {
  const std::size_t errors_before = diagnostics.error_count();
  if (!is_text(source, diagnostics)) return std::nullopt;
  const std::string_view text = source.text();
  SdpaScanner scanner(text);
  const std::optional<SdpaHeader> header = read_sdpa_header(scanner, diagnostics);
  if (!header) return std::nullopt;
  std::vector<SdpaEntry> entries = read_sdpa_entries(scanner, *header, diagnostics);
  sort_sdpa_entries(entries, *header);
  report_repeated_entries(entries, text, diagnostics);
  if (diagnostics.error_count() > errors_before) return std::nullopt;

  Model model;
  model.variables = variables_of(*header);
  model.unknown_count = header->unknowns;
  model.conditions = conditions_of(*header, entries, text);
  model.objective = objective_of(*header);
  model.boxed = false;
  return model;
}

}  // namespace sdpsol
