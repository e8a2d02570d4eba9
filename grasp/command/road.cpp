#include "grasp/command/road.h"

#include <system_error>

#include "host/plugin.h"

namespace grasp::command {
namespace {

namespace fs = std::filesystem;

// A path as one word of the shell.
std::string quoted(const std::string& path) {
  std::string text = "'";
  for (const char c : path) {
    if (c == '\'')
      text += R"('\'')";
    else
      text += c;
  }
  return text + "'";
}

std::string solver_beside_program() {
  std::error_code unknown;
  const fs::path program = fs::read_symlink("/proc/self/exe", unknown);
  const fs::path solver = program.parent_path() / "sdpsol";
  return !unknown && fs::exists(solver, unknown) ? quoted(solver.string()) : "sdpsol";
}

}  // namespace

Road find_road(const Options& options) {
  const fs::path here = fs::current_path();
  const fs::path plugin =
      zelhost::find_plugin(options.plugin, here, zelhost::folders_beside_program());
  return {fs::absolute(plugin), options.solver ? *options.solver : solver_beside_program()};
}

}  // namespace grasp::command
