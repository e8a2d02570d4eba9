// How many random cases a test draws, and how many of them may be of a kind.
#pragma once

namespace sdpsol::testing {

/// `count` in a plain build, a tenth of it under the sanitizers, which look for
/// something else and are slow.
constexpr int many(int count) {
#ifdef SDPSOL_SANITIZE
  return count / 10;
#else
  return count;
#endif
}

/// How many of `drawn` cases a share in thousandths allows. Few cases deviate from
/// their share by a few; no share at all is none.
constexpr int at_most(int thousandths, int drawn) {
  return thousandths == 0 ? 0 : thousandths * drawn / 1000 + 4;
}

}  // namespace sdpsol::testing
