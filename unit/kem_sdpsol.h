// The records through which the host finds the plug-in.
#pragma once

#include "zel/zel.h"

extern "C" {

ZEL_EXPORT extern const ZelIconDef_ ICONDEF_sdpsol;
ZEL_EXPORT extern const zel_icon_entry gasIconsOfFolder_sdpsol[2];
ZEL_EXPORT extern const zel_folder gsFolder_sdpsol;
ZEL_EXPORT extern const zel_version Kem_V_of_sdpsol;
}
