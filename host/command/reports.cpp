#include "host/command/reports.h"

#include "host/text.h"

namespace zelrun {

void say_reports(zelhost::Host& host, std::ostream& err) {
  for (const auto& report : host.take_reports()) {
    err << (report.kind == zelhost::Report::Kind::kError ? "zelrun: error reported by "
                                                         : "zelrun: warning: plug-in misuses ")
        << zelhost::on_one_line(report.text) << "\n";
  }
  err.flush();
}

}  // namespace zelrun
