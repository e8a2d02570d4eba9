// The manual page against the program: every option and every parameter stands in it,
// and it is sound.
#include <gtest/gtest.h>

#include "solver/command/options.h"
#include "solver/language/names.h"
#include "solver/language/parameters.h"
#include "tests/command/manual_page.h"

namespace sdpsol {
namespace {

const char* const kManual = SDPSOL_SOURCE_DIR "/docs/sdpsol.1";

TEST(Manual, HasNothingThatItsFormatterComplainsAbout) {
  EXPECT_EQ(complaints_about(kManual), "");
}

TEST(Manual, HasEveryOption) {
  const char* const words[] = {"sdpsol", "--help"};
  const auto names = option_names(parse_command_line(2, words).output);
  EXPECT_GE(names.size(), 12U);
  const std::string page = manual_page(kManual);
  for (const std::string& name : names) EXPECT_TRUE(has_option(page, name)) << name;
}

TEST(Manual, HasEveryParameterWithItsDefault) {
  const std::string page = manual_page(kManual);
  for (const std::string_view name : kParameterNames) {
    std::ostringstream line;
    line << "\n     " << name << " = " << get_parameter(Parameters{}, name) << "\n";
    EXPECT_NE(page.find(line.str()), std::string::npos) << line.str();
  }
}

TEST(Manual, HasEveryExitStatus) {
  const std::string page = manual_page(kManual);
  for (int status = kExitVerdict; status <= kExitInternal; ++status)
    EXPECT_TRUE(has_status(page, status)) << status;
}

}  // namespace
}  // namespace sdpsol
