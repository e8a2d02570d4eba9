#include "host/check/notes.h"

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace zelcheck {
namespace {

constexpr char kStage = 's';
constexpr char kComplaint = 'c';
constexpr char kFact = 'f';
constexpr char kDone = 'd';

// A note is its kind, the length of its text, and the text.
using Length = std::uint32_t;
constexpr std::size_t kHead = 1 + sizeof(Length);

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
  const auto length = static_cast<Length>(text.size());
  std::string note(kHead, kind);
  std::memcpy(note.data() + 1, &length, sizeof length);
  note += text;
  std::string_view rest = note;
  while (!rest.empty()) {
    const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
}

void NotesReader::take(std::string_view bytes) {
  unread_ += bytes;
  std::size_t begin = 0;
  while (unread_.size() - begin >= kHead) {
    Length length = 0;
    std::memcpy(&length, unread_.data() + begin + 1, sizeof length);
    if (unread_.size() - begin - kHead < length) break;
    take_note(unread_[begin], std::string_view(unread_).substr(begin + kHead, length));
    begin += kHead + length;
  }
  unread_.erase(0, begin);
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
