#include "host/check/notes.h"

#include <unistd.h>

#include <cerrno>
#include <optional>

namespace zelcheck {
namespace {

constexpr char kStage = 's';
constexpr char kComplaint = 'c';
constexpr char kFact = 'f';
constexpr char kDone = 'd';

}  // namespace

void Notes::at(std::string_view stage) const {
  put(kStage, stage);
}

void Notes::complain(std::string_view what) const {
  put(kComplaint, what);
}

void Notes::fact(std::string_view fact) const {
  put(kFact, fact);
}

void Notes::done() const {
  put(kDone, {});
}

void Notes::put(char kind, std::string_view text) const {
  const std::string note = zelhost::to_bytes({kind, std::string(text)});
  std::string_view rest = note;
  while (!rest.empty()) {
    const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
}

void NotesReader::take(std::string_view bytes) {
  unread_.take(bytes);
  while (const std::optional<zelhost::Packet> note = unread_.next())
    take_note(note->kind, note->text);
}

std::string NotesReader::staged(std::string_view text) const {
  return stage_.empty() ? std::string(text) : stage_ + ": " + std::string(text);
}

void NotesReader::take_note(char kind, std::string_view text) {
  switch (kind) {
    case kStage:
      stage_ = text;
      break;
    case kComplaint:
      complaints_.push_back(staged(text));
      break;
    case kFact:
      facts_.emplace_back(text);
      break;
    case kDone:
      is_done_ = true;
      break;
    default:
      // Not ours: the plug-in has written into a descriptor that it never opened.
      break;
  }
}

}  // namespace zelcheck
