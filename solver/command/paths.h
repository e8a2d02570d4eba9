// Names of files and what they lead to.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sdpsol {

/// "standard input" or "standard output" for "-", else the name in quotes.
std::string in_words(const std::string& name, const std::string& standard);

/// The folder that a name stands in, "." if it has no slash.
std::string directory_of(const std::string& name);

/// The name that a chain of symbolic links ends in, which need not exist; nothing
/// if the chain does not end.
std::optional<std::string> follow_links(std::string name);

/// @param input the definition's file name or "-".
/// @param outputs names of files or "-".
/// @throws UsageError if the input and an output, or two outputs, are one file, by
/// inode; names of files that do not exist yet are one if they will be. A name that
/// cannot be looked at is no concern here: opening it will say so.
void refuse_same_files(const std::string& input, const std::vector<std::string>& outputs);

}  // namespace sdpsol
