#include <csignal>
#include <filesystem>
#include <iostream>
#include <new>
#include <system_error>

#include "host/command/check.h"
#include "host/command/interrupts.h"
#include "host/command/list.h"
#include "host/command/options.h"
#include "host/command/run.h"
#include "host/error.h"
#include "host/plugin.h"
#include "host/standard_output.h"
#include "host/text.h"

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

int carry_out(const zelrun::Options& options) {
  const zelrun::Folders folders = plugin_folders(options);
  if (const auto* const list = std::get_if<zelrun::ListOptions>(&options.what)) {
    zelrun::list_plugin(zelhost::load_plugin(find(list->plugin, folders)), std::cout, std::cerr);
    return zelrun::kExitDone;
  }
  if (const auto* const run = std::get_if<zelrun::RunOptions>(&options.what))
    return zelrun::run_network(*run, folders, std::cout, std::cerr);
  const auto& check = std::get<zelrun::CheckOptions>(options.what);
  return zelrun::check_plugin(find(check.plugin, folders), check.time_limit, std::cout);
}

int fail(zelrun::ExitStatus status, const std::string& what) {
  std::cerr << "zelrun: " << zelhost::on_one_line(what) << "\n";
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // Beyond the largest size of files a write fails, and is no end of the host.
  std::signal(SIGXFSZ, SIG_IGN);
  zelhost::open_missing_descriptors();
  try {
    const zelrun::ParsedCommandLine parsed = zelrun::parse_command_line(argc, argv);
    zelhost::print(std::cout, [&parsed](std::ostream& out) { out << parsed.output; });
    std::cerr << parsed.error;
    return parsed.options ? carry_out(*parsed.options) : parsed.status;
  } catch (const zelrun::Interrupted& interrupted) {
    zelrun::end_by(interrupted.signal);
  } catch (const zelhost::HostError& error) {
    return fail(zelrun::kExitFailed, std::string("error: ") + error.what());
  } catch (const std::system_error& error) {
    return fail(zelrun::kExitFile, std::string("error: ") + error.what());
  } catch (const std::bad_alloc&) {
    return fail(zelrun::kExitInternal, "out of memory");
  } catch (const std::exception& error) {
    return fail(zelrun::kExitInternal, std::string("internal error: ") + error.what());
  } catch (...) {
    return fail(zelrun::kExitInternal, "internal error");
  }
}
