// Networks run in the test's own process: the real plug-in, the shell, the real
// command.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/network_file.h"
#include "host/port.h"

namespace network_run {

inline const std::filesystem::path kExamples = SDPSOL_SOURCE_DIR "/examples";

/// The folder of the built plug-ins.
std::filesystem::path plugin_folder();

/// One entry of a network's order, after it was fired.
struct Firing {
  std::string instance;
  std::string method;
  std::vector<zelhost::PortValue> outputs;
  std::vector<zelhost::PortType> types;
  /// What the file sdpsol.out in the working directory held then; empty without one.
  std::string result_file;

  /// An output of one float. @throws std::exception if it is none.
  [[nodiscard]] float number(std::size_t output) const;

  /// An output that is an array of floats. @throws std::exception if it is none.
  [[nodiscard]] const std::vector<float>& list(std::size_t output) const;
};

/// Fires all of a network's order, with the built commands found by the shell.
/// @throws std::runtime_error if the host has something to report about the
/// plug-in; what zelhost::Network throws.
std::vector<Firing> run(const zelhost::NetworkFile& file);

}  // namespace network_run
