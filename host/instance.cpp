#include "host/instance.h"

#include <algorithm>
#include <utility>

namespace zelhost {

Instance::Instance(Unit& root, MethodTexts texts) : root_(&root), texts_(std::move(texts)) {
  collect_methods(root);
}

const Method* Instance::find(std::string_view name) const {
  const auto found = std::find_if(methods_.begin(), methods_.end(),
                                  [name](const Method& method) { return method.name == name; });
  return found == methods_.end() ? nullptr : &*found;
}

void Instance::collect_methods(const Unit& parent) {
  if (!parent.exports) return;
  for (Unit* const child : parent.children()) {
    if (child->is_method()) {
      const std::string name = child->qualified_name();
      const auto text = texts_.find(name);
      methods_.push_back({name, child, text == texts_.end() ? MethodText() : text->second});
    }
    collect_methods(*child);
  }
}

}  // namespace zelhost
