#include "tests/network_run.h"

#include <cstdlib>
#include <stdexcept>

#include "host/host.h"
#include "host/network.h"
#include "tests/support/test_folder.h"

namespace network_run {
namespace {

void let_the_shell_find_the_commands() {
  const char* const before = std::getenv("PATH");
  const std::string path =
      std::string(SDPSOL_BIN_DIR) + ":" + (before == nullptr ? "/usr/bin:/bin" : before);
  setenv("PATH", path.c_str(), 1);
}

void expect_no_reports(zelhost::Host& host) {
  for (const auto& report : host.take_reports()) throw std::runtime_error(report.text);
}

}  // namespace

std::filesystem::path plugin_folder() {
  return std::filesystem::path(SDPSOL_BIN_DIR).parent_path() / "lib";
}

float Firing::number(std::size_t output) const {
  const auto& floats = list(output);
  if (floats.size() != 1) throw std::runtime_error("the output is not one number");
  return floats.front();
}

const std::vector<float>& Firing::list(std::size_t output) const {
  return std::get<std::vector<float>>(outputs.at(output));
}

std::vector<Firing> run(const zelhost::NetworkFile& file) {
  let_the_shell_find_the_commands();
  zelhost::Host host;
  zelhost::Network network(host, file, {plugin_folder()});
  std::vector<Firing> firings;
  for (const zelhost::Step& step : network.steps()) {
    network.fire(step);
    expect_no_reports(host);
    Firing& firing = firings.emplace_back();
    firing.instance = step.instance;
    firing.method = step.method.name;
    for (const zelhost::Port& port : step.method.unit->outputs()) {
      firing.outputs.push_back(port.value());
      firing.types.push_back(port.type());
    }
    if (std::filesystem::exists("sdpsol.out"))
      firing.result_file = test_support::content_of("sdpsol.out");
  }
  return firings;
}

}  // namespace network_run
