#include <filesystem>
#include <iostream>

#include "host/command/check.h"
#include "host/command/interrupts.h"
#include "host/command/list.h"
#include "host/command/options.h"
#include "host/command/run.h"
#include "host/plugin.h"
#include "host/program.h"

namespace {

namespace fs = std::filesystem;

zelrun::Folders plugin_folders(const zelrun::Options& options) {
  zelrun::Folders folders = options.plugin_folders;
  for (const fs::path& folder : zelhost::folders_beside_program()) folders.push_back(folder);
  return folders;
}

// A plug-in that the command line names.
fs::path find(const std::string& name, zelrun::Folders folders) {
  folders.insert(folders.begin(), fs::current_path());
  return zelhost::find_plugin(name, fs::current_path(), folders);
}

int run_network(const zelrun::RunOptions& run, const zelrun::Folders& folders) {
  try {
    return zelrun::run_network(run, folders, std::cout, std::cerr);
  } catch (const zelrun::Interrupted& interrupted) {
    zelrun::end_by(interrupted.signal);
  }
}

int carry_out(const zelrun::Options& options) {
  const zelrun::Folders folders = plugin_folders(options);
  if (const auto* const list = std::get_if<zelrun::ListOptions>(&options.what)) {
    zelrun::list_plugin(zelhost::load_plugin(find(list->plugin, folders)), std::cout, std::cerr);
    return zelhost::kExitDone;
  }
  if (const auto* const run = std::get_if<zelrun::RunOptions>(&options.what))
    return run_network(*run, folders);
  const auto& check = std::get<zelrun::CheckOptions>(options.what);
  return zelrun::check_plugin(find(check.plugin, folders), check.time_limit, std::cout);
}

}  // namespace

int main(int argc, char** argv) {
  return zelhost::run_program(
      "zelrun", [&] { return zelrun::parse_command_line(argc, argv); }, carry_out);
}
