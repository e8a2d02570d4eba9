#include "host/check/arrays.h"

#include <dlfcn.h>
#include <malloc.h>

#include <cstdint>
#include <filesystem>

namespace zelcheck {
namespace {

using zelhost::Port;

// Of both kinds of array.
constexpr std::size_t kElementSize = sizeof(float);
static_assert(kElementSize == sizeof(std::int32_t));

std::string what_is_wrong(const Port& port) {
  Dl_info library{};
  if (dladdr(port.array(), &library) != 0)
    return "the array is not from new[] but a variable of " +
           std::filesystem::path(library.dli_fname).filename().string();
  // Every block begins at a multiple of this; what does not cannot be asked for its size.
  if (reinterpret_cast<std::uintptr_t>(port.array()) % __STDCPP_DEFAULT_NEW_ALIGNMENT__ != 0)
    return "the array is not from new[], which never returns such an address";
  // The block may be somewhat larger than was asked for, so that not all shows.
  const std::size_t room = malloc_usable_size(const_cast<void*>(port.array())) / kElementSize;
  if (room >= static_cast<std::size_t>(port.length())) return {};
  return "the array has no room for " + std::to_string(port.length()) + " elements, but for " +
         std::to_string(room);
}

}  // namespace

std::vector<std::string> unsound_arrays(const std::deque<Port>& outputs) {
  std::vector<std::string> complaints;
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    if (outputs[i].array() == nullptr) continue;
    const std::string wrong = what_is_wrong(outputs[i]);
    if (!wrong.empty()) complaints.push_back("output " + std::to_string(i) + ": " + wrong);
  }
  return complaints;
}

}  // namespace zelcheck
