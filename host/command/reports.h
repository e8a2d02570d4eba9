// What the host reports of a plug-in, said on standard error.
#pragma once

#include <ostream>

#include "host/host.h"

namespace zelrun {

/// Says what has been reported since the last time.
void say_reports(zelhost::Host& host, std::ostream& err);

/// Says what is reported while it lives, also when an exception ends that: what a
/// plug-in did wrong is often why a network does not fit it.
class ReportsSaid {
 public:
  ReportsSaid(zelhost::Host& host, std::ostream& err) : host_(host), err_(err) {}
  ~ReportsSaid() { say_reports(host_, err_); }
  ReportsSaid(const ReportsSaid&) = delete;
  ReportsSaid& operator=(const ReportsSaid&) = delete;
  ReportsSaid(ReportsSaid&&) = delete;
  ReportsSaid& operator=(ReportsSaid&&) = delete;

 private:
  zelhost::Host& host_;
  std::ostream& err_;
};

}  // namespace zelrun
