// For tests of the host: a plug-in without a library, and a host that creates its
// instances.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/host.h"

namespace zelhost {

// What the plug-in does while an instance is created: the test's.
inline std::function<def_unittype*(def_unittype* parent)> creating;

inline def_unittype* create(int, int, const ZelIconDef_*, def_unittype* parent) {
  return creating(parent);
}

inline int second(int, int, const ZelIconDef_*, def_unittype*) {
  return 1;
}

inline const ZelIconDef_ kDefinition = {nullptr, create, second, "", "", "test", "", nullptr};
inline const Icon kIcon = {"test", {}, &kDefinition};

class HostTest : public testing::Test {
 protected:
  ~HostTest() override { creating = nullptr; }

  // An instance of a root and what `build` does with it.
  Instance instance(std::function<void(def_unittype* root)> build,
                    std::vector<std::string> dialog = {}) {
    creating = [build = std::move(build)](def_unittype* parent) {
      def_unittype* const root = primitive_unit(TAG_END, parent);
      zel_indicate_export_of_methods(root);
      return_unit(root);
      build(root);
      label(root, "test");
      return root;
    };
    return host_.create(kIcon, std::move(dialog));
  }

  // What the host has said since the last call.
  std::vector<std::string> said() {
    std::vector<std::string> texts;
    for (const Report& report : host_.take_reports())
      texts.push_back((report.kind == Report::Kind::kError ? "error: " : "misuse: ") + report.text);
    return texts;
  }

  using Texts = std::vector<std::string>;

  Host host_;
};

}  // namespace zelhost
