// How what a program throws becomes an exit status and a line for people.
#include "host/program.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <system_error>

#include "host/plugin.h"

namespace zelhost {
namespace {

// The status, and what is said on standard error.
std::string failure(const std::function<int()>& work) {
  testing::internal::CaptureStderr();
  const int status = report_failures("program", work);
  return std::to_string(status) + " " + testing::internal::GetCapturedStderr();
}

TEST(ReportFailures, IsSilentAboutWorkThatEnds) {
  EXPECT_EQ(failure([] { return 7; }), "7 ");
}

TEST(ReportFailures, SaysWhoseFaultItIs) {
  EXPECT_EQ(failure([]() -> int { throw UsageError("no such option"); }),
            "2 program: no such option\n");
  EXPECT_EQ(failure([]() -> int { throw MissingPlugin("a.so: no such file"); }),
            "3 program: error: a.so: no such file\n");
  EXPECT_EQ(failure([]() -> int { throw PluginError("a.so: no records"); }),
            "1 program: error: a.so: no records\n");
  EXPECT_EQ(
      failure([]() -> int { throw std::system_error(ENOENT, std::generic_category(), "a.json"); }),
      "3 program: error: a.json: No such file or directory\n");
}

TEST(ReportFailures, SaysThatAFaultIsItsOwn) {
  EXPECT_EQ(failure([]() -> int { throw std::bad_alloc(); }), "4 program: out of memory\n");
  EXPECT_EQ(failure([]() -> int { throw std::logic_error("two\nlines"); }),
            "4 program: internal error: two lines\n");
  EXPECT_EQ(failure([]() -> int { throw 7; }), "4 program: internal error\n");
}

}  // namespace
}  // namespace zelhost
