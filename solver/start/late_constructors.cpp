#include "solver/start/late_constructors.h"

#include <utility>

using Constructor = void (*)();

// The linker script's names for the borders of what it put aside; null without it.
extern "C" {
[[gnu::weak]] extern const Constructor late_engine_begin[];
[[gnu::weak]] extern const Constructor late_engine_end[];
[[gnu::weak]] extern const Constructor late_options_begin[];
[[gnu::weak]] extern const Constructor late_options_end[];
}

namespace sdpsol {
namespace {

void call_once(bool& called, const Constructor* begin, const Constructor* end) {
  if (std::exchange(called, true)) return;
  for (; begin != end; ++begin) (*begin)();
}

}  // namespace

void construct_engine_library() {
  static bool called = false;
  call_once(called, late_engine_begin, late_engine_end);
}

void construct_options_library() {
  static bool called = false;
  call_once(called, late_options_begin, late_options_end);
}

}  // namespace sdpsol
