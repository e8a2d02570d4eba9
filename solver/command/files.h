// Files in and out, as whole files.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

namespace sdpsol {

/// A file that could not be read or written; what() is the whole message.
class FileError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The command line names files in a way that cannot be meant.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A device that is no terminal may give this much: most of them have no end.
inline constexpr std::size_t kMaxDeviceBytes = std::size_t{1} << 20U;

/// The whole content of a file, of standard input for "-".
/// @param most_bytes a longer file is an error: pipes need not have an end.
/// @throws FileError.
std::string read_whole_file(const std::string& name, std::size_t most_bytes);

/// A file descriptor that is closed at the end of its owner's life.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }

  int get() const { return fd_; }
  /// Closes now; false if that failed, which is how some file systems report a
  /// write that did not reach the disk.
  bool close();

 private:
  int fd_ = -1;
};

/// One output of a run.
///
/// The result appears whole or not at all, and a stale one never survives a
/// failed run: a regular file is removed as soon as the run begins; the new one
/// is written into a file without a name, which gets the name when it is whole.
/// Not even a killed run leaves something else behind, unless the file system
/// knows no files without names: there the new file is called .sdpsol-XXXXXX
/// until it is whole.
///
/// A symbolic link keeps its name and its target is replaced. Anything that is
/// not a regular file (a device, a pipe) is written into and never removed; names
/// like /dev/stdout may lead to one.
class ResultFile {
 public:
  /// Removes the old one.
  /// @param name a file name, or "-" for standard output.
  /// @throws FileError if the result could not be written later on.
  explicit ResultFile(const std::string& name);
  ResultFile(const ResultFile&) = delete;
  ResultFile& operator=(const ResultFile&) = delete;
  ~ResultFile();

  /// Writes the text where nobody sees it, as far as that can be.
  /// @throws FileError.
  void stage(std::string text);
  /// Makes visible what was staged. What is no regular file is written only now.
  /// @throws FileError, with no trace of the result left behind.
  void publish();
  /// Removes what was published, if that is a regular file.
  void withdraw() const;
  bool is_regular() const { return !target_.empty() && !in_place_; }

 private:
  void remove_old() const;
  void drop();
  // The reason of a failure of these is in errno.
  bool open_without_name();
  bool open_beside();
  bool give_name();
  bool write_beside_and_rename();
  bool write_in_place() const;

  std::string name_;    ///< as given
  std::string target_;  ///< what symbolic links lead to; empty for standard output
  bool in_place_ = false;
  std::string text_;
  Descriptor staged_;   ///< the new regular file
  std::string beside_;  ///< its name for the time being, if it has one
};

}  // namespace sdpsol
