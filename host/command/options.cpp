#include "host/command/options.h"

#include <charconv>
#include <utility>

#include "host/command_line.h"
#include "version.h"

namespace zelrun {
namespace {

// The range check of the library lets through what is not a number.
std::string is_time_limit(const std::string& text) {
  double seconds = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, seconds);
  const bool is_number = read.ec == std::errc() && read.ptr == end;
  return is_number && seconds >= 0.001 && seconds <= 86400
             ? std::string()
             : "takes seconds, from 0.001 to 86400, not " + text;
}

}  // namespace

zelhost::ParsedCommandLine<Options> parse_command_line(int argc, const char* const* argv) {
  CLI::App app{"Loads plug-ins of computing units and runs networks of them.", "zelrun"};
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string("zelrun ") + project::kVersion);
  app.footer(
      "A network file decides which plug-ins are loaded and which texts they are given, and\n"
      "plug-ins may hand texts to the shell: a network file is as powerful as a script.\n"
      "\n"
      "Exit status: 0 done, 1 a network or a plug-in has an error, or a method or a check\n"
      "failed, 2 wrong usage, 3 a file could not be read or written, 4 out of memory or an\n"
      "internal error.");

  Options options;
  const auto add_folders = [&options](CLI::App& command, const std::string& first) {
    command
        .add_option("-p,--plugins", options.plugin_folders,
                    "Look for plug-ins in FOLDER, after " + first + "; may be given several times")
        ->type_name("FOLDER")
        ->allow_extra_args(false);
  };

  ListOptions list;
  CLI::App& list_command =
      *app.add_subcommand("list", "Show a plug-in's icons, methods and ports with their texts");
  list_command.add_option("PLUGIN", list.plugin, "Plug-in: a path, or a name to look for")
      ->required()
      ->type_name("");
  add_folders(list_command, "the working folder");

  RunOptions run;
  CLI::App& run_command = *app.add_subcommand("run", "Run a network and print its outputs");
  run_command.add_option("NETWORK", run.network, "Network file")->required()->type_name("");
  run_command
      .add_flag("--json", run.json,
                "Print the outputs as JSON; what plug-ins print goes to standard error")
      ->disable_flag_override();
  add_folders(run_command, "the network's folder");

  CheckOptions check;
  CLI::App& check_command =
      *app.add_subcommand("check", "Check that a plug-in does what a host expects");
  check_command.add_option("PLUGIN", check.plugin, "Plug-in: a path, or a name to look for")
      ->required()
      ->type_name("");
  check_command.add_option("--time-limit", check.time_limit, "How long one check may take")
      ->capture_default_str()
      ->type_name("SECONDS")
      ->check(is_time_limit);
  add_folders(check_command, "the working folder");

  return zelhost::parse_with<Options>(app, argc, argv, [&] {
    if (list_command.parsed()) options.what = list;
    if (run_command.parsed()) options.what = run;
    if (check_command.parsed()) options.what = check;
    return std::move(options);
  });
}

}  // namespace zelrun
