// What a check has to say, on its way from the child process that it runs in to
// the process that prints it. Every note is written as it is made, so that what a
// check found before a crash is known.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/packets.h"

namespace zelcheck {

/// The writing end, in the child.
class Notes {
 public:
  /// @param descriptor of a pipe. Notes that it does not take are lost.
  explicit Notes(int descriptor) : descriptor_(descriptor) {}

  /// What is done from now on, for the reader of a complaint or of a crash. An
  /// empty text: nothing that would have to be said.
  void at(std::string_view stage) const;

  /// Something that is wrong.
  void complain(std::string_view what) const;

  /// Something that later checks need to know.
  void fact(std::string_view fact) const;

  /// The check came to its end, whatever it found: what is left is to end the process.
  void done() const;

 private:
  void put(char kind, std::string_view text) const;

  int descriptor_;
};

/// The reading end: takes the bytes as they come.
class NotesReader {
 public:
  void take(std::string_view bytes);

  /// "STAGE: WHAT".
  [[nodiscard]] const std::vector<std::string>& complaints() const { return complaints_; }
  [[nodiscard]] const std::vector<std::string>& facts() const { return facts_; }
  [[nodiscard]] bool is_done() const { return is_done_; }

  /// The text with the present stage before it.
  [[nodiscard]] std::string staged(std::string_view text) const;

 private:
  void take_note(char kind, std::string_view text);

  zelhost::PacketAssembler unread_;
  std::string stage_;
  std::vector<std::string> complaints_;
  std::vector<std::string> facts_;
  bool is_done_ = false;
};

}  // namespace zelcheck
