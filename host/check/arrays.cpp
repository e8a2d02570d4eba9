#include "host/check/arrays.h"

#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>

#include <cstdint>
#include <filesystem>

#ifdef SDPSOL_SANITIZE
// The address sanitizer's own, for which g++ has no header.
extern "C" int __sanitizer_get_ownership(const volatile void* address);
extern "C" std::size_t __sanitizer_get_allocated_size(const volatile void* address);
#endif

namespace zelcheck {
namespace {

using zelhost::Port;

// Of both kinds of array.
constexpr std::size_t kElementSize = sizeof(float);
static_assert(kElementSize == sizeof(std::int32_t));

bool is_on_stack(const void* address) {
  pthread_attr_t thread;
  if (pthread_getattr_np(pthread_self(), &thread) != 0) return false;
  void* begin = nullptr;
  std::size_t size = 0;
  const bool is_known = pthread_attr_getstack(&thread, &begin, &size) == 0;
  pthread_attr_destroy(&thread);
  const auto offset =
      reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(begin);
  return is_known && offset < size;
}

// Of a block on the heap; 0 if it clearly is none. It may be somewhat larger than was
// asked for, so that not all shows.
std::size_t size_of_block(const void* address) {
  // Every block begins at a multiple of this. What does not cannot be asked for its size.
  if (reinterpret_cast<std::uintptr_t>(address) % __STDCPP_DEFAULT_NEW_ALIGNMENT__ != 0) return 0;
#ifdef SDPSOL_SANITIZE
  return __sanitizer_get_ownership(address) == 0 ? 0 : __sanitizer_get_allocated_size(address);
#else
  return malloc_usable_size(const_cast<void*>(address));
#endif
}

std::string what_is_wrong(const Port& port) {
  Dl_info library{};
  if (dladdr(port.array(), &library) != 0)
    return "the array is not from new[] but a variable of " +
           std::filesystem::path(library.dli_fname).filename().string();
  if (is_on_stack(port.array())) return "the array is not from new[] but a local variable";
  const std::size_t size = size_of_block(port.array());
  if (size == 0) return "the array is not from new[]";
  const std::size_t room = size / kElementSize;
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
