// What the host adds to the driver: firing a method, alone and in a whole run of the
// command zelrun, against running the driver directly on the same definition; and
// loading the plug-in with its tree against loading an empty library.
//
// Goals: "ratio" of firing and of the command 1.1; "beyond" of loading 1 ms.
#include <dlfcn.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "bench/compare.h"
#include "bench/four_contacts.h"
#include "bench/suite.h"
#include "host/host.h"
#include "host/network.h"
#include "host/plugin.h"
#include "tests/support/test_folder.h"
#include "unit/sdpsol_wrapper.h"

namespace {

namespace fs = std::filesystem;
using test_support::TestFolder;
using Json = nlohmann::json;

// As the shell takes it, whatever the folder of the build is called.
const std::string kSolver = "'" SDPSOL_COMMAND "'";

constexpr int kFirings = 1000;

// A network that asks the same question again and again.
zelhost::NetworkFile thousand_firings(const TestFolder& folder, const bench::Grasp& grasp) {
  const Json instance = {{"plugin", PLUGIN},
                         {"icon", "sdpsol"},
                         {"dialog",
                          {{"sdpsol command", kSolver},
                           {"definition file", folder.path("network.in")},
                           {"result file", folder.path("network.out")}}}};
  const Json inputs = {{"instance", "four"},
                       {"methods", {"IntForce:Exists"}},
                       {"values",
                        {{"Nullspace Base", grasp.base},
                         {"Friction constraints", grasp.friction},
                         {"Force constraints", grasp.bounds},
                         {"Contact Types", grasp.types}}}};
  Json order = Json::array();
  for (int i = 0; i < kFirings; ++i) order.push_back({"four", "IntForce:Exists"});
  const Json network = {
      {"instances", {{"four", instance}}}, {"inputs", {inputs}}, {"order", order}};
  return zelhost::read_network(folder.file("network.json", network.dump()));
}

void fire(benchmark::State& state) {
  const TestFolder folder;
  const bench::Grasp grasp = bench::four_contacts();
  zelhost::Host host;
  zelhost::Network network(host, thousand_firings(folder, grasp), {});
  sdpsol_wrapper direct(kSolver, folder.path("direct.in"), folder.path("direct.out"));
  direct.internalForceExists(grasp.base, grasp.types, grasp.friction, grasp.bounds);

  auto step = network.steps().begin();
  bool failed = false;
  bench::compare(
      state, bench::wall_seconds, [&] { network.fire(*step++); },
      [&] { failed = direct.run() != 0 || failed; });
  const auto& found = network.steps().front().method.unit->outputs()[0];
  if (failed || found.value() != zelhost::PortValue(std::vector<float>{1}))
    throw std::runtime_error("a run failed or found no internal force");
  if (test_support::content_of(direct.definitionFile) !=
      test_support::content_of(folder.path("network.in")))
    throw std::runtime_error("the two ask different questions");
}

// From starting zelrun to its end, with all that it prints.
void command(benchmark::State& state) {
  const TestFolder folder;
  const bench::Grasp grasp = bench::four_contacts();
  const auto network = thousand_firings(folder, grasp);
  sdpsol_wrapper direct(kSolver, folder.path("direct.in"), folder.path("direct.out"));
  direct.internalForceExists(grasp.base, grasp.types, grasp.friction, grasp.bounds);
  const std::string line =
      "'" ZELRUN "' run " + network.path.string() + " >" + folder.path("printed");

  bool failed = false;
  bench::compare(
      state, bench::wall_seconds, [&] { failed = std::system(line.c_str()) != 0 || failed; },
      [&] {
        for (int i = 0; i < kFirings; ++i) failed = direct.run() != 0 || failed;
      });
  if (failed) throw std::runtime_error("a run failed");
}

// A library is loaded once, so each round loads a copy of its own.
void load(benchmark::State& state) {
  const TestFolder folder;
  zelhost::Host host;
  int copies = 0;
  fs::path plugin;
  fs::path empty;
  const auto copy = [&] {
    const fs::path own = folder.path(std::to_string(copies++));
    fs::create_directory(own);
    plugin = own / fs::path(PLUGIN).filename();
    empty = own / fs::path(EMPTY_LIBRARY).filename();
    fs::copy_file(PLUGIN, plugin);
    fs::copy_file(EMPTY_LIBRARY, empty);
  };
  bool failed = false;
  copy();
  bench::compare(
      state, bench::wall_seconds,
      [&] {
        const zelhost::Plugin loaded = zelhost::load_plugin(plugin);
        const zelhost::Icon& icon = loaded.icons.front();
        failed = host.create(icon, icon.presets()).methods().size() != 11 || failed;
      },
      [&] { failed = dlopen(empty.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr || failed; }, copy);
  if (failed) throw std::runtime_error("a library was not loaded");
}

}  // namespace

int main(int argc, char** argv) try {
  bench::Suite suite;
  suite.add("fire", fire)->UseManualTime()->Iterations(kFirings)->Unit(benchmark::kMillisecond);
  suite.add("command", command)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
  suite.add("load", load)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond);
  return suite.run(argc, argv);
} catch (const std::exception& error) {
  std::cerr << "host_bench: " << error.what() << "\n";
  return 1;
}
