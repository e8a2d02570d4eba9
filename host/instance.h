// An instance as users see it: methods by their names, with their texts.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/unit.h"

namespace zelhost {

/// What a plug-in said about a method and its ports. Ports count from 0.
struct MethodText {
  std::string help;
  std::map<int, std::string> inputs;
  std::map<int, std::string> outputs;
};

/// By the methods' qualified names.
using MethodTexts = std::map<std::string, MethodText, std::less<>>;

/// A method of an instance. The unit belongs to the host.
struct Method {
  std::string name;  ///< qualified: "Group:Method", or "Method" below the root
  Unit* unit = nullptr;
  MethodText text;  ///< empty where the plug-in described none
};

/// Valid as long as the host.
class Instance {
 public:
  Instance(Unit& root, MethodTexts texts);

  [[nodiscard]] Unit& root() const { return *root_; }

  /// Those that users see, in the order in which the tree was built.
  [[nodiscard]] const std::vector<Method>& methods() const { return methods_; }

  /// @return null if there is no method of this name.
  [[nodiscard]] const Method* find(std::string_view name) const;

  /// All that the plug-in described, also what there is no method for.
  [[nodiscard]] const MethodTexts& texts() const { return texts_; }

 private:
  void collect_methods(const Unit& parent);

  Unit* root_;
  MethodTexts texts_;
  std::vector<Method> methods_;
};

}  // namespace zelhost
