#include "grasp/batch/line_reader.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace grasp {
namespace {

constexpr std::size_t kBufferSize = 65536;

}  // namespace

LineReader::LineReader(int descriptor, std::size_t longest, std::string name)
    : descriptor_(descriptor), longest_(longest), name_(std::move(name)) {}

std::optional<InputLine> LineReader::next() {
  const std::string_view rest = std::string_view(buffer_).substr(begin_);
  const std::size_t end = rest.find('\n');
  const bool is_whole = end != std::string_view::npos;
  const std::string_view part = rest.substr(0, end);
  begin_ += part.size() + (is_whole ? 1 : 0);
  line_.bytes += part.size() + (is_whole ? 1 : 0);
  // One more than it may have: that may be a CR.
  if (line_.text.size() + part.size() > longest_ + 1) {
    line_.too_long = true;
    line_.text = {};
  }
  if (!line_.too_long) line_.text += part;
  if (is_whole || (is_at_end_ && line_.bytes > 0)) return finish_line();
  return std::nullopt;
}

InputLine LineReader::finish_line() {
  if (!line_.text.empty() && line_.text.back() == '\r') line_.text.pop_back();
  if (line_.text.size() > longest_) {
    line_.too_long = true;
    line_.text = {};
  }
  return std::exchange(line_, {});
}

void LineReader::read_more() {
  buffer_.resize(kBufferSize);
  begin_ = 0;
  ssize_t got = 0;
  do got = read(descriptor_, buffer_.data(), buffer_.size());
  while (got < 0 && errno == EINTR);
  if (got < 0) {
    const int why = errno;
    buffer_.clear();
    throw std::system_error(why, std::generic_category(), name_);
  }
  buffer_.resize(static_cast<std::size_t>(got));
  is_at_end_ = got == 0;
}

}  // namespace grasp
