// Runs the built command as a shell would.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "tests/support/test_folder.h"

namespace sdpsol {

using test_support::content_of;
using test_support::TestFolder;

/// Whether a limit on its memory tells anything of the command: shared libraries and
/// sanitizers take addresses of their own before main.
#if defined(SDPSOL_STATIC)
inline constexpr bool kLimitsMemory = true;
#else
inline constexpr bool kLimitsMemory = false;
#endif

struct Ended {
  int status = -1;  ///< exit status as the shell tells it: 128 + n after signal n
  std::string output;
  std::string error;
};

/// Runs a shell line in the folder, where $S is the command. Its output and
/// error are caught unless the line sends them elsewhere.
inline Ended run_line(const TestFolder& folder, const std::string& line) {
  const TestFolder caught;
  const std::string script = caught.file(
      "script", "S=" SDPSOL_BIN_DIR "/sdpsol\ncd " + folder.path() + "\n" + line + "\n");
  const int status = std::system(("sh " + script + " </dev/null >" + caught.path("output") +  //
                                  " 2>" + caught.path("error"))
                                     .c_str());
  Ended ended;
  if (WIFEXITED(status)) ended.status = WEXITSTATUS(status);
  ended.output = content_of(caught.path("output"));
  ended.error = content_of(caught.path("error"));
  return ended;
}

inline bool has(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

/// A definition that takes the command a good second: correlations of `size`
/// quantities under random weights.
inline std::string long_definition(int size) {
  const std::string n = std::to_string(size);
  std::string text = "variable X(" + n + "," + n + ") symmetric;\nX > 0;\n";
  std::string sum;
  unsigned weight = 1;
  for (int i = 1; i <= size; ++i) {
    text += "X(" + std::to_string(i) + "," + std::to_string(i) + ") == 1;\n";
    for (int j = 1; j < i; ++j) {
      weight = weight * 1103515245 + 12345;
      sum += "+" + std::to_string((weight >> 16U) % 100) + "*X(" + std::to_string(i) + "," +
             std::to_string(j) + ")";
    }
  }
  return text + "maximize o = " + sum + ";\n";
}

}  // namespace sdpsol
