// One line on the terminal of standard error, drawn again and again while something runs.
#pragma once

#include <cstddef>
#include <string>

namespace zelhost {

/// Whether standard error is a terminal.
bool has_terminal();

/// How many characters the line can have: a longer one would wrap, and every drawing would
/// leave a part of it behind.
std::size_t terminal_columns();

/// @param line at most terminal_columns() characters, none of which moves the cursor.
void draw_terminal_line(const std::string& line);

void clear_terminal_line();

}  // namespace zelhost
