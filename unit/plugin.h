// The built plug-in, loaded as a host does.
#pragma once

#include <dlfcn.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "zel/zel.h"

namespace unit_test {

/// The plug-in of this build, or the one that the environment names instead.
inline const char* plugin_file() {
  const char* const named = std::getenv("SDPSOL_PLUGIN");
  return named != nullptr ? named : SDPSOL_BIN_DIR "/../lib/sdpsol.so";
}

/// The address of what the plug-in exports under this name. The plug-in stays
/// loaded until the process ends: its drivers live as long.
template <class Symbol>
Symbol* exported(const char* name) {
  static void* const plugin = dlopen(plugin_file(), RTLD_NOW | RTLD_LOCAL);
  if (plugin == nullptr) throw std::runtime_error(dlerror());
  void* const address = dlsym(plugin, name);
  if (address == nullptr) throw std::runtime_error("the plug-in exports no " + std::string(name));
  return reinterpret_cast<Symbol*>(address);
}

inline const ZelIconDef_& icon() {
  return *exported<const ZelIconDef_>("ICONDEF_sdpsol");
}

}  // namespace unit_test
