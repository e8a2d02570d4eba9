// What a host expects of a plug-in's library before it creates anything.
#pragma once

#include <filesystem>

#include "host/check/notes.h"
#include "host/plugin.h"

namespace zelcheck {

/// The library loads: its code is for this machine, what it needs is there, and
/// what runs at loading does not fail.
void check_loads(const std::filesystem::path& file, const Notes& notes);

/// The records are exported and lead to each other. States the icons' names as facts.
void check_records(const std::filesystem::path& file, const Notes& notes);

/// The dialog's fields can be told apart.
void check_dialog(const zelhost::Icon& icon, const Notes& notes);

}  // namespace zelcheck
