// A terminal for commands that behave otherwise on one.
#pragma once

#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace test_support {

/// A program with a terminal of its own, of whose job it is.
class OnATerminal {
 public:
  /// @param line for the shell.
  explicit OnATerminal(const std::string& line, unsigned short columns = 80) {
    const winsize size = {24, columns, 0, 0};
    child_ = forkpty(&master_, nullptr, nullptr, &size);
    if (child_ < 0) throw std::runtime_error("no terminal");
    if (child_ > 0) return;
    execl("/bin/sh", "sh", "-c", line.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  ~OnATerminal() { close(master_); }
  OnATerminal(const OnATerminal&) = delete;
  OnATerminal& operator=(const OnATerminal&) = delete;

  void type(char key) const {
    if (write(master_, &key, 1) != 1) throw std::runtime_error("nobody takes the key");
  }

  /// What the program writes until it ends.
  std::string until_the_end() {
    std::string text;
    char block[256];
    // The master side fails with EIO once the child has closed its side.
    for (ssize_t got = 0; (got = read(master_, block, sizeof block)) > 0;)
      text.append(block, static_cast<std::size_t>(got));
    waitpid(child_, &status_, 0);
    return text;
  }

  /// Of the program that has ended, as waitpid tells it.
  [[nodiscard]] int status() const { return status_; }

 private:
  int master_ = -1;
  pid_t child_ = -1;
  int status_ = -1;
};

}  // namespace test_support
