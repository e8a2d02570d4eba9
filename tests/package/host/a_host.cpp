// A host program of somebody who has the library installed: runs a network and prints
// what each method publishes, one output a line.
#include <zelhost/host.h>
#include <zelhost/literal.h>
#include <zelhost/network.h>

#include <iostream>
#include <nlohmann/json.hpp>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: a_host NETWORK PLUGIN_FOLDER\n";
    return 2;
  }
  try {
    const zelhost::NetworkFile file = zelhost::read_network(argv[1]);
    zelhost::Host host;
    zelhost::Network network(host, file, {argv[2]});
    for (const zelhost::Step& step : network.steps()) {
      network.fire(step);
      for (const zelhost::Port& output : step.method.unit->outputs())
        std::cout << to_json(output.value(), output.type()) << "\n";
    }
    return 0;
  } catch (const zelhost::HostError& error) {
    std::cerr << "a_host: " << error.what() << "\n";
    return 1;
  }
}
