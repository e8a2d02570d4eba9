// Asks the plug-in in the host, as any network does.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "grasp/answer.h"
#include "host/error.h"

namespace grasp {

/// The plug-in or the solver did not do its work; what() says what they said.
class AskError : public zelhost::HostError {
 public:
  using HostError::HostError;
};

/// Where the plug-in and the command are that it starts.
struct Road {
  std::filesystem::path plugin;
  /// A text for the shell, as a network would have it.
  std::string command;
};

/// One instance of the unit, used again and again. A process has one at a time; it is
/// used from the thread that made it. It writes the files "definition" and "result"
/// in the working directory, which must be its own.
class Asker {
 public:
  /// @throws zelhost::HostError if the plug-in cannot be loaded or gives no instance.
  explicit Asker(const Road& road);
  ~Asker();
  Asker(const Asker&) = delete;
  Asker& operator=(const Asker&) = delete;
  Asker(Asker&&) = delete;
  Asker& operator=(Asker&&) = delete;

  /// @param inquiry about contacts that the grasp has.
  /// @throws AskError.
  Answer ask(const Grasp& grasp, const Inquiry& inquiry);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace grasp
