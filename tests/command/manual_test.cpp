// The manual page against the program: every option and every parameter stands in it,
// and it is sound.
#include <gtest/gtest.h>

#include <sstream>

#include "solver/command/options.h"
#include "solver/language/names.h"
#include "solver/language/parameters.h"
#include "tests/command/run_command.h"

namespace sdpsol {
namespace {

const char* const kManual = SDPSOL_SOURCE_DIR "/docs/sdpsol.1";

/// The page as it is read, without the pictures of bold letters.
std::string manual() {
  const TestFolder folder;
  Ended ended = run_line(folder, std::string("groff -mandoc -Tascii -P-cbou ") + kManual);
  EXPECT_EQ(ended.status, 0) << ended.error;
  return std::move(ended.output);
}

TEST(Manual, HasNothingThatItsFormatterComplainsAbout) {
  const TestFolder folder;
  const Ended ended = run_line(folder, std::string("groff -ww -mandoc -Tutf8 -z ") + kManual);
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.output + ended.error, "");
}

TEST(Manual, HasEveryOption) {
  const std::string page = manual();
  const std::string options = page.substr(page.find("\nOPTIONS\n"));
  const char* const words[] = {"sdpsol", "--help"};
  std::istringstream lines(parse_command_line(2, words).output);
  int found = 0;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("  -")) continue;
    std::istringstream names(line.substr(2, line.find(' ', 2) - 2));
    for (std::string name; std::getline(names, name, ',');) {
      ++found;
      // At the beginning of a paragraph of its own, alone or beside its other name.
      const bool stands = options.find("\n     " + name + "\n") != std::string::npos ||
                          options.find("\n     " + name + " ") != std::string::npos ||
                          options.find("\n     " + name + ",") != std::string::npos ||
                          options.find(", " + name + "\n") != std::string::npos ||
                          options.find(", " + name + " ") != std::string::npos;
      EXPECT_TRUE(stands) << name;
    }
  }
  EXPECT_GE(found, 12);
}

TEST(Manual, HasEveryParameterWithItsDefault) {
  const std::string page = manual();
  for (const std::string_view name : kParameterNames) {
    std::ostringstream line;
    line << "\n     " << name << " = " << get_parameter(Parameters{}, name) << "\n";
    EXPECT_NE(page.find(line.str()), std::string::npos) << line.str();
  }
}

TEST(Manual, HasEveryExitStatus) {
  const std::string page = manual();
  for (int status = kExitVerdict; status <= kExitInternal; ++status) {
    EXPECT_NE(page.find("\n     " + std::to_string(status) + "  "), std::string::npos) << status;
  }
}

}  // namespace
}  // namespace sdpsol
