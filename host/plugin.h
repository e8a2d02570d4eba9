// A plug-in library and what it brings.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/dialog.h"
#include "host/error.h"
#include "zel/zel.h"

namespace zelhost {

/// The library cannot be loaded, or its records are not what a host expects;
/// what() names the file, the record and what is wrong.
class PluginError : public HostError {
 public:
  using HostError::HostError;
};

/// There is no such file; what() names the places.
class MissingPlugin : public PluginError {
 public:
  using PluginError::PluginError;
};

/// Something that instances are created from.
struct Icon {
  std::string name;
  std::vector<DialogField> fields;
  const ZelIconDef_* definition = nullptr;

  /// The dialog as it comes up.
  [[nodiscard]] std::vector<std::string> presets() const;
};

/// A loaded plug-in.
struct Plugin {
  std::filesystem::path file;
  /// Of the interface it was written for.
  std::string version;
  std::string folder;
  std::vector<Icon> icons;

  /// @return null if there is no icon of this name.
  [[nodiscard]] const Icon* find(std::string_view icon) const;
};

/// Loads a plug-in and reads its records. Its name, without folder and ending, is
/// the NAME in the names of its records. It stays loaded until the process ends,
/// as do the things that its instances hold.
/// @throws PluginError.
Plugin load_plugin(const std::filesystem::path& file);

/// The file that a plug-in's name stands for: a name with a "/" is a path; a bare
/// one is looked for in the folders, in their order, with ".so" added if it has none.
/// @param base what relative paths start from.
/// @throws MissingPlugin.
std::filesystem::path find_plugin(const std::string& name, const std::filesystem::path& base,
                                  const std::vector<std::filesystem::path>& folders);

/// Where the plug-ins stand that were built or installed together with this program.
std::vector<std::filesystem::path> folders_beside_program();

}  // namespace zelhost
