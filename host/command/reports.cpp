#include "host/command/reports.h"

namespace zelrun {

void say_reports(zelhost::Host& host, std::ostream& err) {
  for (const auto& report : host.take_reports()) {
    err << (report.kind == zelhost::Report::Kind::kError ? "zelrun: error reported by "
                                                         : "zelrun: warning: plug-in misuses ")
        << report.text << "\n";
  }
  err.flush();
}

}  // namespace zelrun
