// Pictures appear whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace grasp::command {

/// Writes beside the file first and takes its place then. What is no regular file, a
/// device or a pipe, is written into; the target of a symbolic link is replaced.
/// @param name what errors call the file. @throws std::system_error.
void write_whole(const std::filesystem::path& file, const std::string& name, std::string_view text);

}  // namespace grasp::command
