// How many random cases a test draws.
#pragma once

namespace sdpsol::testing {

/// `count` in a plain build, a tenth of it under the sanitizers, which look for
/// something else and are slow.
constexpr int many(int count) {
#ifdef __SANITIZE_ADDRESS__
  return count / 10;
#else
  return count;
#endif
}

}  // namespace sdpsol::testing
