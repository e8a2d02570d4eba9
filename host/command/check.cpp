#include "host/command/check.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <string_view>

#include "host/check/check_plugin.h"
#include "host/standard_output.h"
#include "host/text.h"

namespace zelrun {
namespace {

using zelcheck::Result;
using zelcheck::Verdict;
using zelhost::on_one_line;
using zelhost::print;

std::string_view word(Verdict verdict) {
  switch (verdict) {
    case Verdict::kPassed:
      return "passed   ";
    case Verdict::kFailed:
      return "FAILED   ";
    case Verdict::kSkipped:
      return "skipped  ";
  }
  return {};
}

void print_output(std::string_view output, std::ostream& out) {
  while (!output.empty()) {
    const std::string_view line = output.substr(0, output.find('\n'));
    out << "           " << on_one_line(line) << "\n";
    output.remove_prefix(std::min(output.size(), line.size() + 1));
  }
}

void print_result(const Result& result, std::ostream& out) {
  out << word(result.verdict) << on_one_line(result.check);
  if (!result.reason.empty()) out << ": " << on_one_line(result.reason);
  out << "\n";
  if (result.verdict == Verdict::kFailed) print_output(result.output, out);
}

}  // namespace

zelhost::ExitStatus check_plugin(const std::filesystem::path& plugin, double time_limit,
                                 std::ostream& out) {
  int checks = 0;
  std::map<Verdict, int> counts;
  zelcheck::check_plugin(plugin, time_limit, [&](const Result& result) {
    print(out, [&result](std::ostream& text) { print_result(result, text); });
    ++checks;
    ++counts[result.verdict];
  });
  print(out, [&](std::ostream& text) {
    text << checks << " checks, " << counts[Verdict::kPassed] << " passed, "
         << counts[Verdict::kFailed] << " failed, " << counts[Verdict::kSkipped] << " skipped\n";
  });
  return counts[Verdict::kPassed] == checks ? zelhost::kExitDone : zelhost::kExitFailed;
}

}  // namespace zelrun
