#include "grasp/process/worker.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <system_error>
#include <utility>

#include "host/descriptor.h"
#include "host/process_end.h"

namespace grasp {

using zelhost::Packet;

namespace {

// Packets from the worker, by what they report.
constexpr char kReady = 'r';
constexpr char kNotReady = 'n';
constexpr char kAnswer = 'a';
constexpr char kError = 'e';
// And to it.
constexpr char kRequest = 'q';

constexpr const char* kPrintedFile = "printed";

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

// The worker keeps its socket and nothing else of its parent: not the results, not
// the ends of other workers, which would not see their parent go.
void keep_only(int socket) {
  const auto number = static_cast<unsigned>(socket);
  if (number > STDERR_FILENO + 1) close_range(STDERR_FILENO + 1, number - 1, 0);
  close_range(number + 1, UINT_MAX, 0);
}

void set_up_worker(int socket, const ScratchFolder& folder) {
  setpgid(0, 0);
  // A crash is an error like any other, and leaves no core file.
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
  keep_only(socket);
  folder.enter();
  const zelhost::Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
  const zelhost::Descriptor printed(
      open(kPrintedFile, O_RDWR | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600));
  if (dup2(nothing.get(), STDIN_FILENO) < 0 || dup2(printed.get(), STDOUT_FILENO) < 0 ||
      dup2(printed.get(), STDERR_FILENO) < 0)
    fail("a worker's files");
}

Packet reply(const Answerer& answer, const std::string& request, const PrintedText& printed) {
  try {
    return {kAnswer, answer(request)};
  } catch (const WorkerUnfit& error) {
    return {kNotReady, error.what()};
  } catch (const std::exception& error) {
    return {kError, with_printed(error.what(), printed.text())};
  } catch (...) {
    return {kError, with_printed("an error without a text", printed.text())};
  }
}

void serve(const MakeAnswerer& make, int socket, const ScratchFolder& folder) {
  try {
    set_up_worker(socket, folder);
  } catch (const std::exception& error) {
    zelhost::send_whole(socket, {kNotReady, error.what()});
    return;
  }
  Answerer answer;
  const PrintedText printed(STDOUT_FILENO);
  try {
    answer = make(printed);
  } catch (const std::exception& error) {
    zelhost::send_whole(socket, {kNotReady, with_printed(error.what(), printed.text())});
    return;
  }
  printed.clear();
  if (!zelhost::send_whole(socket, {kReady, {}})) return;
  zelhost::PacketAssembler received;
  while (const std::optional<Packet> request = receive(socket, received)) {
    const Packet said = reply(answer, request->text, printed);
    printed.clear();
    if (!zelhost::send_whole(socket, said) || said.kind == kNotReady) return;
  }
}

}  // namespace

Worker::Worker(const MakeAnswerer& make, const zelhost::HeldSignals& signals) {
  std::array<int, 2> ends = {};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) fail("socketpair");
  socket_ = zelhost::Descriptor(ends[0]);
  // Above the standard ones, whose place the worker gives to files of its own.
  const zelhost::Descriptor low(ends[1]);
  const zelhost::Descriptor theirs(fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (!theirs.is_open()) fail("a worker's socket");
  // Or both processes would print what is still in the buffers.
  std::cout.flush();
  std::fflush(nullptr);
  child_ = fork();
  if (child_ < 0) fail("a worker process");
  if (child_ == 0) {
    signals.release();
    serve(make, theirs.get(), folder_);
    folder_.remove();
    // Without the destructors of static objects: they are the parent's.
    _exit(0);
  }
  // Both do it, since neither knows who comes first.
  setpgid(child_, child_);
}

Worker::~Worker() {
  if (!has_died_) zelhost::end_group(child_);
}

void Worker::ask(std::string request) {
  sending_ = zelhost::to_bytes({kRequest, std::move(request)});
  sent_ = 0;
  send_rest();
}

short Worker::awaited_events() const {
  return static_cast<short>(sent_ < sending_.size() ? POLLIN | POLLOUT : POLLIN);
}

void Worker::send_rest() {
  while (sent_ < sending_.size()) {
    const ssize_t sent = send(socket_.get(), sending_.data() + sent_, sending_.size() - sent_,
                              MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent < 0 && errno == EINTR) continue;
    // That a worker has died shows when its answer is awaited.
    if (sent <= 0) return;
    sent_ += static_cast<std::size_t>(sent);
  }
  sending_ = {};
  sent_ = 0;
}

std::optional<WorkerReport> Worker::advance() {
  using Kind = WorkerReport::Kind;
  if (has_died_) return std::nullopt;
  send_rest();
  for (;;) {
    if (std::optional<Packet> packet = received_.next()) {
      const Kind kind = packet->kind == kReady      ? Kind::kReady
                        : packet->kind == kNotReady ? Kind::kNotReady
                        : packet->kind == kAnswer   ? Kind::kAnswer
                                                    : Kind::kError;
      return WorkerReport{kind, std::move(packet->text)};
    }
    std::array<char, 65536> buffer;
    const ssize_t got = recv(socket_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 && errno == EAGAIN) return std::nullopt;
    if (got <= 0) return bury();
    received_.take({buffer.data(), static_cast<std::size_t>(got)});
  }
}

WorkerReport Worker::bury() {
  const int status = zelhost::end_group(child_);
  has_died_ = true;
  const zelhost::Descriptor printed(
      open((folder_.path() / kPrintedFile).c_str(), O_RDONLY | O_CLOEXEC));
  const std::string text = PrintedText(printed.get()).text();
  folder_.remove();
  return {WorkerReport::Kind::kDied, with_printed(zelhost::how_it_ended(status), text)};
}

}  // namespace grasp
