#include "grasp/batch/result_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "grasp/batch/line_reader.h"
#include "host/descriptor.h"
#include "host/json_reader.h"

namespace grasp {
namespace {

using zelhost::Json;

// Of a result: longer than any that an input line can lead to.
constexpr std::size_t kLongestLine = std::size_t{1} << 28;

// What stands in a line of a result; none if it is not the one of this number.
std::optional<Json> read_result(const InputLine& line, std::uint64_t number) {
  Json json = Json::parse(line.text, nullptr, false);
  if (!json.is_object() || json.empty() || json.begin().key() != "line") return std::nullopt;
  if (!json.begin()->is_number_unsigned() || *json.begin() != number) return std::nullopt;
  return json;
}

std::string verdict_of(const Json& result) {
  const auto verdict = result.find("verdict");
  return verdict != result.end() && verdict->is_string() ? verdict->get<std::string>() : "";
}

}  // namespace

ResultFile::ResultFile(const std::optional<std::string>& path, bool resume)
    : name_(path.value_or("standard output")) {
  if (!path) {
    descriptor_ = zelhost::Descriptor(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!descriptor_.is_open()) fail();
  } else {
    struct stat state = {};
    const bool exists = stat(path->c_str(), &state) == 0;
    const bool is_device = exists && !S_ISREG(state.st_mode);
    if (is_device && resume) throw ResultFileError(name_ + " is no file that can be continued");
    if (exists && !is_device && !resume)
      throw ResultFileError(name_ + " exists; --resume continues it");
    const int how = is_device ? O_WRONLY
                    : resume  ? O_RDWR | O_APPEND | O_CREAT
                              : O_WRONLY | O_APPEND | O_CREAT | O_EXCL;
    descriptor_ = zelhost::Descriptor(open(path->c_str(), how | O_CLOEXEC | O_NOCTTY, 0666));
    if (!descriptor_.is_open()) fail();
  }
  struct stat state = {};
  is_regular_ = fstat(descriptor_.get(), &state) == 0 && S_ISREG(state.st_mode);
  if (path && is_regular_) lock();
}

void ResultFile::lock() const {
  // Two that write one file would both go on where it ended for them. Workers do not
  // inherit this kind of lock. Where there are none, as on some network file systems, it
  // goes without.
  struct flock whole = {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  if (fcntl(descriptor_.get(), F_SETLK, &whole) != 0 && (errno == EAGAIN || errno == EACCES))
    throw ResultFileError(name_ + " is being written by another process");
}

void ResultFile::fail() const {
  throw std::system_error(errno, std::generic_category(), name_);
}

PartialResult ResultFile::examine(std::uint64_t first_line) {
  PartialResult seen;
  PartialResult answered;
  LineReader reader(descriptor_.get(), kLongestLine, name_);
  const auto see = [&](InputLine line) {
    const std::uint64_t number = first_line + seen.lines;
    const std::optional<Json> result = read_result(line, number);
    if (!result)
      throw ResultFileError(name_ + ":" + std::to_string(seen.lines + 1) +
                            ": this is not the result of line " + std::to_string(number) +
                            " of a batch");
    ++seen.lines;
    seen.bytes += line.bytes;
    seen.witness = std::move(line.text);
    if (result->contains("error")) {
      seen.tally.count_error();
    } else {
      seen.tally.count(verdict_of(*result));
      answered = seen;
    }
  };
  for (;;) {
    const bool was_at_end = reader.is_at_end();
    if (std::optional<InputLine> line = reader.next()) {
      ++seen.all_lines;
      // What only the end of the file ends has no line break.
      if (!was_at_end) see(std::move(*line));
    } else if (was_at_end) {
      break;
    } else {
      reader.read_more();
    }
  }
  PartialResult& kept = answered.lines > 0 ? answered : seen;
  kept.all_lines = seen.all_lines;
  return kept;
}

void ResultFile::keep(const PartialResult& partial) {
  if (is_regular_ && ftruncate(descriptor_.get(), static_cast<off_t>(partial.bytes)) != 0) fail();
}

void ResultFile::add(const std::string& line) {
  waiting_ += line;
  waiting_ += '\n';
}

void ResultFile::write_some() {
  // What a pipe is ready for is at least this much.
  const std::size_t most = is_regular_ ? waiting_.size() : PIPE_BUF;
  do {
    const std::size_t size = std::min(most, waiting_.size() - written_);
    const ssize_t written = write(descriptor_.get(), waiting_.data() + written_, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail();
    written_ += static_cast<std::size_t>(written);
  } while (is_regular_ && has_more());
  if (has_more()) return;
  waiting_.clear();
  written_ = 0;
}

void ResultFile::finish() const {
  if (is_regular_ && fsync(descriptor_.get()) != 0 && errno != EINVAL && errno != EROFS) fail();
}

}  // namespace grasp
