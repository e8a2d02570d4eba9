// Types of ports for tests.
#pragma once

#include "host/port.h"

namespace zelhost {

inline constexpr PortType kFloat{PortKind::kFloats, 1};
inline constexpr PortType kTwoFloats{PortKind::kFloats, 2};
inline constexpr PortType kThreeFloats{PortKind::kFloats, 3};
inline constexpr PortType kText{PortKind::kText, 1};
inline constexpr PortType kFloatArray{PortKind::kFloatArray, 1};
inline constexpr PortType kIntegerArray{PortKind::kIntegerArray, 1};

}  // namespace zelhost
