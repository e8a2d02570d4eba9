// What holds of the errors that reading JSON ends with.
#pragma once

#include <string>
#include <string_view>

#include "host/json_reader.h"

namespace fuzz {

/// The error begins with the file's name and a place of its text: a line and a column, or
/// a pointer to a value that is there; and it says what is wrong.
void require_placed(const zelhost::JsonError& error, const std::string& file,
                    std::string_view text);

}  // namespace fuzz
