// Workers are started as lines wait for them, so a short batch starts few. Each has one
// line at a time: what it costs to hand over the next one is nothing beside a solve.
#include "grasp/batch/batch_run.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "host/descriptor.h"
#include "host/json_reader.h"
#include "host/text.h"

namespace grasp {
namespace {

using zelhost::Json;

// How far the fastest line may be ahead of the slowest. A few seconds' work of many
// workers, and some megabytes.
constexpr std::size_t kMaxLines = 1024;
constexpr std::uint64_t kMaxBytes = std::uint64_t{4} * kLongestInputLine;

// What may wait for a slow reader of the result.
constexpr std::size_t kMaxWaiting = 65536;

// A worker that dies before it has begun may have met somebody's kill; the third one
// has not.
constexpr int kMaxStillborn = 3;

zelhost::Descriptor open_input(const std::string& name) {
  // Above the standard descriptors, in case one of those is closed.
  zelhost::Descriptor input(name == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)
                                        : open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (!input.is_open()) throw std::system_error(errno, std::generic_category(), name);
  return input;
}

std::string shown_name(const std::string& input) {
  return input == "-" ? "standard input" : input;
}

// Over the socket: a number, a line feed and the line; a verdict, a line feed and the
// answer.
std::pair<std::string, std::string> split(const std::string& text) {
  const std::size_t end = text.find('\n');
  return {text.substr(0, end), text.substr(end + 1)};
}

MakeAnswerer as_texts(const MakeAnswerLine& make) {
  return [make](const PrintedText& printed) -> Answerer {
    return [answer = make(printed)](const std::string& request) {
      const auto [number, text] = split(request);
      const LineAnswer said = answer(std::stoull(number), text);
      return said.verdict + "\n" + said.text;
    };
  };
}

// An answer with times as what two runs have in common.
Json without_times(const std::string& text) {
  Json answer = Json::parse(text, nullptr, false);
  if (answer.is_object() && answer.contains("times")) answer["times"] = nullptr;
  return answer;
}

}  // namespace

BatchRun::BatchRun(const BatchOptions& options, const MakeAnswerLine& make,
                   const zelhost::HeldSignals& signals)
    : options_(options),
      signals_(signals),
      make_(as_texts(make)),
      input_(open_input(options.input)),
      result_(options.output, options.resume),
      reader_(input_.get(), kLongestInputLine, shown_name(options.input)),
      window_(kMaxLines, kMaxBytes) {
  if (options.resume && options.output) partial_ = result_.examine(options.first_line);
  tally_ = partial_.tally;
  state_.lines_before = partial_.lines;
  struct stat file = {};
  const off_t at = lseek(input_.get(), 0, SEEK_CUR);
  if (fstat(input_.get(), &file) == 0 && S_ISREG(file.st_mode) && at >= 0 && at <= file.st_size)
    state_.bytes_ahead = static_cast<std::uint64_t>(file.st_size - at);
}

bool BatchRun::run() {
  BatchProgress progress(options_.quiet);
  for (;;) {
    do {
      take_in();
      hand_out();
    } while (put_out());
    if (is_done()) break;
    progress.tell(state_);
    if (!wait(progress)) return false;
    take_reports();
  }
  begin_writing();
  result_.finish();
  return true;
}

bool BatchRun::is_done() const {
  return has_all_input_ && window_.is_empty() && !result_.has_more();
}

bool BatchRun::wait(const BatchProgress& progress) {
  // Of no descriptor, where nothing is waited for.
  const bool reads = needs_input_ && !has_all_input_;
  std::vector<pollfd> events = {{signals_.descriptor(), POLLIN, 0},
                                {reads ? input_.get() : -1, POLLIN, 0},
                                {result_.has_more() ? result_.descriptor() : -1, POLLOUT, 0}};
  for (const Hand& hand : hands_)
    events.push_back({hand.worker->descriptor(), hand.worker->awaited_events(), 0});
  if (poll(events.data(), events.size(), progress.is_due_in()) < 0) {
    if (errno == EINTR) return true;
    throw std::system_error(errno, std::generic_category(), "poll");
  }
  if (events[0].revents != 0) return false;
  if (events[1].revents != 0) {
    reader_.read_more();
    needs_input_ = false;
  }
  if (events[2].revents != 0) result_.write_some();
  return true;
}

void BatchRun::take_in() {
  while (!needs_input_ && !has_all_input_ && window_.has_room()) {
    if (std::optional<InputLine> line = reader_.next())
      admit(std::move(*line));
    else if (reader_.is_at_end())
      see_end_of_input();
    else
      needs_input_ = true;
  }
}

void BatchRun::admit(InputLine line) {
  ++lines_read_;
  const std::uint64_t number = options_.first_line + lines_read_ - 1;
  if (lines_read_ < partial_.lines) {
    if (state_.bytes_ahead) *state_.bytes_ahead -= std::min(*state_.bytes_ahead, line.bytes);
    return;
  }
  WindowLine added = {number, std::move(line.text), line.bytes, 0, std::nullopt};
  if (line.too_long)
    added.answer = error_line(number, "", "the line is longer than 16 MiB");
  else if (zelhost::trimmed(added.text).empty())
    added.answer = error_line(number, "", "the line is empty");
  window_.add(std::move(added));
}

void BatchRun::see_end_of_input() {
  has_all_input_ = true;
  if (lines_read_ < partial_.all_lines)
    throw ResultFileError(result_.name() + " has results of more lines than " +
                          shown_name(options_.input) + " has: it belongs to another input");
}

void BatchRun::hand_out() {
  for (Hand& hand : hands_) {
    if (window_.waiting() == 0) return;
    if (!hand.is_ready || hand.line != 0) continue;
    const WindowLine& line = window_.hand_out();
    hand.line = line.number;
    hand.worker->ask(std::to_string(line.number) + "\n" + line.text);
  }
  const auto beginning = static_cast<std::size_t>(
      std::count_if(hands_.begin(), hands_.end(), [](const Hand& hand) { return !hand.is_ready; }));
  const std::size_t wanted = window_.waiting();
  for (std::size_t more = beginning; more < wanted && hands_.size() < options_.workers; ++more)
    hands_.push_back({std::make_unique<Worker>(make_, signals_)});
}

void BatchRun::take_reports() {
  for (Hand& hand : hands_)
    while (const std::optional<WorkerReport> report = hand.worker->advance())
      take_report(hand, *report);
}

void BatchRun::take_report(Hand& hand, const WorkerReport& report) {
  switch (report.kind) {
    case WorkerReport::Kind::kReady:
      hand.is_ready = true;
      stillborn_ = 0;
      return;
    case WorkerReport::Kind::kNotReady:
      throw zelhost::HostError(report.text);
    case WorkerReport::Kind::kAnswer: {
      auto [verdict, text] = split(report.text);
      window_.answer(std::exchange(hand.line, 0), {std::move(verdict), std::move(text)});
      return;
    }
    case WorkerReport::Kind::kError: {
      const std::uint64_t number = std::exchange(hand.line, 0);
      window_.answer(number, error_line(number, "", report.text));
      return;
    }
    case WorkerReport::Kind::kDied:
      hand.worker = succeed(hand, report.text);
      hand.is_ready = false;
      hand.line = 0;
      return;
  }
}

std::unique_ptr<Worker> BatchRun::succeed(const Hand& hand, const std::string& how_it_died) {
  if (!hand.is_ready && ++stillborn_ == kMaxStillborn)
    throw zelhost::HostError("no worker can begin; the last one: " + how_it_died);
  if (hand.line != 0) {
    if (++window_.line(hand.line).crashes < 2)
      window_.hand_back(hand.line);
    else
      window_.answer(
          hand.line,
          error_line(hand.line, "", "two workers died of this line; the second: " + how_it_died));
  }
  return std::make_unique<Worker>(make_, signals_);
}

bool BatchRun::put_out() {
  // Nothing is touched of results of more lines than there are.
  if (lines_read_ < partial_.all_lines && window_.has_room()) return false;
  bool has_taken = false;
  while (result_.waiting() < kMaxWaiting) {
    const std::optional<WindowLine> line = window_.take_answered();
    if (!line) break;
    has_taken = true;
    put_out(*line);
  }
  if (result_.is_always_ready()) result_.write_some();
  return has_taken;
}

void BatchRun::put_out(const WindowLine& line) {
  if (line.number - options_.first_line < partial_.lines) {
    check_witness(line.answer->text);
    if (state_.bytes_ahead) *state_.bytes_ahead -= std::min(*state_.bytes_ahead, line.bytes);
    return;
  }
  begin_writing();
  result_.add(line.answer->text);
  if (line.answer->verdict.empty())
    tally_.count_error();
  else
    tally_.count(line.answer->verdict);
  ++state_.lines;
  state_.bytes += line.bytes;
}

void BatchRun::check_witness(const std::string& text) const {
  if (text == partial_.witness) return;
  if (options_.times && without_times(text) == without_times(partial_.witness)) return;
  const std::string place = result_.name() + ":" + std::to_string(partial_.lines);
  throw ResultFileError(place + ": line " +
                        std::to_string(options_.first_line + partial_.lines - 1) + " of " +
                        shown_name(options_.input) +
                        " has another answer now: the results belong to another input or "
                        "question");
}

void BatchRun::begin_writing() {
  if (is_writing_) return;
  is_writing_ = true;
  if (options_.resume) result_.keep(partial_);
}

}  // namespace grasp
