// The result record between two runs.
#pragma once

#include "unit/sdpsol_wrapper.h"

namespace sdpsol_internal {

/// Nothing known: errorCode 100, not feasible, objective 0, no values.
inline void reset(sdpsol_wrapper::result& last) {
  last.errorCode = 100;
  last.feasible = false;
  last.objectiveValue = 0.0;
  last.variableValues.clear();
  last.variableNames.clear();
  last.valueCount = 0;
}

}  // namespace sdpsol_internal
