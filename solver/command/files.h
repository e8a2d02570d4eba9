// Files in and out, as whole files.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace sdpsol {

/// A file that could not be read or written; what() is the whole message.
class FileError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The command line names files in a way that cannot be meant.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The whole content of a file, of standard input for "-".
/// @param most_bytes a longer file is an error: devices have no end.
/// @throws FileError.
std::string read_whole_file(const std::string& name, std::size_t most_bytes);

/// Where the result goes.
///
/// The result appears whole or not at all, and a stale one never survives a
/// failed run: a regular file is removed as soon as the run begins; the new one
/// is written beside it and renamed. A symbolic link keeps its name and its
/// target is replaced. Anything that is not a regular file (a device, a pipe) is
/// written into and never removed; names like /dev/stdout may lead to one.
class ResultFile {
 public:
  /// @param name a file name, or "-" for standard output.
  /// @param input the definition's file name or "-"; the result must be another file.
  /// @throws UsageError if both are one file (by inode), nothing is touched then;
  ///         FileError if the result could not be written later on.
  ResultFile(const std::string& name, const std::string& input);

  /// @throws FileError, with no trace of the result left behind.
  void write(const std::string& text) const;

 private:
  void remove_old() const;
  void write_beside_and_rename(const std::string& text) const;

  std::string name_;    ///< as given
  std::string target_;  ///< what symbolic links lead to; empty for standard output
  bool in_place_ = false;
};

}  // namespace sdpsol
