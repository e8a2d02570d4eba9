// The examples of a document: definitions, each with what the command says about it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sdpsol {

/// A fence "```sdpsol" and the fence "```text" that follows it.
struct Example {
  std::size_t line = 0;  ///< of the document, where the definition begins
  std::string definition;
  std::string report;  ///< what the document claims
  /// Of the report in the document's text, so that it can be replaced.
  std::size_t report_begin = 0;
  std::size_t report_end = 0;
};

/// The examples in the order of the text. @throws std::runtime_error with the line
/// for a definition without a report, a fence that is not closed, and a fence of any
/// other kind than these two and "ebnf": every example of a document is to be run.
std::vector<Example> examples_of(std::string_view document);

/// How a document shows a run of the command: everything on the error stream, and
/// where there is a verdict, that line, the reason that follows it, and then the
/// values that `claimed` names in lines such as "x = 1.25", with as many digits as
/// stand there.
std::string shown(const std::string& output, const std::string& error, std::string_view claimed);

}  // namespace sdpsol
