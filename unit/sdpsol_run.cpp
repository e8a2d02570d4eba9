// The run cycle: definition file, shell, result file, and the reports of what
// went wrong on the way.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <locale>
#include <system_error>
#include <utility>

#include "unit/sdpsol_result.h"
#include "unit/sdpsol_text.h"
#include "unit/sdpsol_wrapper.h"

using sdpsol_internal::append;
using sdpsol_internal::say;

namespace {

constexpr std::string_view kFrame = "----------------------------------------------\n";

int fail(sdpsol_wrapper::result& last, int code, std::string_view report) {
  say(report);
  last.errorCode = code;
  last.feasible = false;
  return code;
}

std::string report_write(const sdpsol_wrapper& driver) {
  std::string text;
  append(text, kFrame, "____________writeDefinition NOT successful____\n",
         "check permissions of file ", driver.definitionFile, "\n", kFrame);
  return text;
}

std::string report_call(const sdpsol_wrapper& driver) {
  std::string text;
  append(text, kFrame, "_____________callsdpsol NOT successful________\n",
         "check if commandline \"", driver.commandLine, "\" \n",
         "is executable, your permissions on ", driver.definitionFile, " and ", driver.resultFile,
         "\n", "and look for preceding errors from sdpsol.\n",
         "Maybe there is no or an empty defintion in ", driver.definitionFile, "\n.", kFrame);
  return text;
}

std::string report_read(const sdpsol_wrapper& driver) {
  std::string text;
  append(text, kFrame, "______________readResult NOT successful_______\n",
         "check permissions of file ", driver.resultFile, "\n", kFrame);
  return text;
}

std::string report_parse(const sdpsol_wrapper& driver) {
  std::string text;
  append(text, kFrame, "_____________parseResult NOT successful_______\n",
         "check contents of file ", driver.definitionFile, "\n", "this may be a bug... \n", kFrame);
  return text;
}

}  // namespace

sdpsol_wrapper::sdpsol_wrapper(std::string command, std::string definitionFileName,
                               std::string resultFileName)
    : definitionFile(std::move(definitionFileName)),
      resultFile(std::move(resultFileName)),
      commandLine(std::move(command)) {
  append(commandLine, " -q -o ", resultFile, " ", definitionFile);
}

int sdpsol_wrapper::writeDefinition() {
  std::ofstream file;
  // The text leaves as it is, whatever conversion the global locale would do.
  file.imbue(std::locale::classic());
  file.open(definitionFile, std::ios::out | std::ios::trunc);
  if (!file) return 1;
  file.write(definition.data(), static_cast<std::streamsize>(definition.size()));
  return 0;
}

int sdpsol_wrapper::callsdpsol() {
  // The command writes to the same terminal; what was said before stands before.
  std::cout.flush();
  return std::system(commandLine.c_str());
}

int sdpsol_wrapper::readResult() {
  std::vector<char> block(std::size_t{1} << 18);
  std::ifstream file;
  file.imbue(std::locale::classic());
  file.rdbuf()->pubsetbuf(block.data(), static_cast<std::streamsize>(block.size()));
  file.open(resultFile);
  if (!file) return 1;

  std::string text;
  std::error_code size_unknown;
  const std::uintmax_t size = std::filesystem::file_size(resultFile, size_unknown);
  if (!size_unknown) text.reserve(size);
  // Whatever the buffer holds is taken at once. A read that fails ends the text
  // where it stands, as the end of the file does: a directory reads as empty.
  while (file.peek() != std::ifstream::traits_type::eof()) {
    const std::streamsize ready = file.rdbuf()->in_avail();
    const std::size_t old_size = text.size();
    text.resize(old_size + static_cast<std::size_t>(ready));
    file.rdbuf()->sgetn(text.data() + old_size, ready);
  }
  resultText = std::move(text);
  return 0;
}

int sdpsol_wrapper::run() {
  sdpsol_internal::reset(lastResult);
  if (writeDefinition() != 0) return fail(lastResult, 1, report_write(*this));
  if (callsdpsol() != 0) return fail(lastResult, 2, report_call(*this));
  if (readResult() != 0) return fail(lastResult, 3, report_read(*this));
  if (parseResult() != 0) return fail(lastResult, 4, report_parse(*this));
  lastResult.errorCode = 0;
  return 0;
}

void sdpsol_wrapper::print_command_values() {
  std::string text;
  append(text, "using sdpsol with: ", commandLine, "\n");
  say(text);
}
