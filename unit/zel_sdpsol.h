// The unit in its host: the constructor of an instance.
#pragma once

#include "zel/zel.h"

extern "C" {

/// Makes one driver and the tree of groups and methods that work on it. The
/// instance's driver is never freed: the host tells nobody when an instance ends.
/// @param command, definitionFileName, resultFileName as the driver takes them;
/// null counts as an empty text.
/// @return the tree's root; null, with the host's error 2, if the parent is no
/// unit, or with error 30 if the host makes no root.
ZEL_EXPORT def_unittype* sdpsol(def_unittype* parent, char* command, char* definitionFileName,
                                char* resultFileName);
}
