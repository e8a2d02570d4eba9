// A network that can be run: its plug-ins loaded, its instances created, its
// inputs set and its wires laid.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "host/error.h"
#include "host/host.h"
#include "host/network_file.h"

namespace zelhost {

/// A method did not do its work; what() says which and why.
class MethodError : public HostError {
 public:
  using HostError::HostError;
};

/// One entry of the order of firing.
struct Step {
  std::string instance;
  Method method;
};

class Network {
 public:
  /// @param host lives longer.
  /// @param plugin_folders where plug-ins without a path are looked for, after the
  /// network's own folder.
  /// @throws JsonError for what in the file does not fit the plug-ins, PluginError,
  /// CreationError.
  Network(Host& host, const NetworkFile& file,
          const std::vector<std::filesystem::path>& plugin_folders);

  [[nodiscard]] const std::vector<Step>& steps() const { return steps_; }

  /// Runs the method of a step with what the wires into it carry now.
  /// @throws MethodError if it throws or returns other than 0.
  void fire(const Step& step);

 private:
  struct Wire {
    const Port* from;
    Port* to;
  };

  void create_instances(const NetworkFile& file, const std::vector<std::filesystem::path>& folders);
  const Plugin& load(const NetworkFile::Instance& instance, const std::filesystem::path& base,
                     const std::vector<std::filesystem::path>& places);
  void set_inputs(const NetworkFile& file);
  void set_input(const Method& method, const NetworkFile::Value& value);
  void lay_wires(const NetworkFile& file);
  [[nodiscard]] const Method& find_method(const NetworkFile::MethodAddress& address) const;
  // Notes who fills a port, and refuses a second one.
  void claim(const JsonNode& at, const Port* port);

  Host& host_;
  std::map<std::filesystem::path, Plugin> plugins_;
  std::map<std::string, Instance> instances_;
  std::map<const Port*, std::string> filled_by_;
  // By the unit whose inputs they lead to.
  std::multimap<const Unit*, Wire> wires_;
  std::vector<Step> steps_;
};

}  // namespace zelhost
