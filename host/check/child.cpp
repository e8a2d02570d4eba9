// The child leads a process group, which is killed as a whole when the child has
// ended or has taken too long: a plug-in starts shells, and they start others. The
// parent waits for the child itself and not for the ends of its pipes, since a
// process that was left behind may hold those.
#include "host/check/child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/check/captured_text.h"
#include "host/descriptor.h"
#include "host/held_signals.h"
#include "host/process_end.h"

namespace zelcheck {
namespace {

namespace fs = std::filesystem;
using zelhost::Descriptor;
using zelhost::HeldSignals;

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

// Programs that the child starts do not inherit it.
class Pipe {
 public:
  Pipe() {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("pipe");
    read_ = Descriptor(ends[0]);
    write_ = Descriptor(ends[1]);
    fcntl(read_.get(), F_SETFL, O_NONBLOCK);
  }

  [[nodiscard]] int writing_end() const { return write_.get(); }
  void close_writing_end() { write_ = Descriptor(); }

  // Of no descriptor at all once there is nothing more to come, as it would be
  // ready for ever then.
  [[nodiscard]] pollfd awaited() const { return {read_.get(), POLLIN, 0}; }

  // Reads what there is, but not for ever from a writer that does not stop.
  template <class Taker>
  void drain(const Taker& take) {
    std::array<char, 65536> buffer;
    for (int i = 0; i < 16 && read_.get() >= 0; ++i) {
      const ssize_t size = read(read_.get(), buffer.data(), buffer.size());
      if (size < 0 && errno == EINTR) continue;
      if (size < 0) return;
      if (size == 0) read_ = Descriptor();
      take(std::string_view(buffer.data(), static_cast<std::size_t>(size)));
    }
  }

 private:
  Descriptor read_;
  Descriptor write_;
};

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "zelrun_check_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) fail("a temporary folder");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  TemporaryFolder(TemporaryFolder&&) = delete;
  TemporaryFolder& operator=(TemporaryFolder&&) = delete;

  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

void set_up_child(const fs::path& folder, const Pipe& output) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // A crash is a result like any other, and leaves no core file.
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
  const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
  dup2(nothing.get(), STDIN_FILENO);
  dup2(output.writing_end(), STDOUT_FILENO);
  dup2(output.writing_end(), STDERR_FILENO);
  fs::current_path(folder);
}

[[noreturn]] void be_child(const std::function<void(const Notes&)>& work, const fs::path& folder,
                           const Pipe& output, const Notes& notes) {
  try {
    set_up_child(folder, output);
    work(notes);
  } catch (const std::exception& error) {
    notes.complain(std::string("threw: ") + error.what());
  } catch (...) {
    notes.complain("threw what is no std::exception");
  }
  std::cout.flush();
  std::fflush(nullptr);
  notes.done();
  // Without the destructors of static objects: they are the parent's.
  _exit(0);
}

// Waits for the child's end, or until it is to be ended, and reads meanwhile what
// it has to say. @return whether it is over time.
template <class Reader>
bool wait_for(const Descriptor& child, const HeldSignals& signals, const Pipe& notes,
              const Pipe& output, double time_limit, const Reader& read_all) {
  const auto start = std::chrono::steady_clock::now();
  for (;;) {
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    const double left = time_limit - spent.count();
    if (!(left > 0)) return true;
    std::array<pollfd, 4> events = {{{child.get(), POLLIN, 0},
                                     {signals.descriptor(), POLLIN, 0},
                                     notes.awaited(),
                                     output.awaited()}};
    constexpr double kLongest = 1000;
    poll(events.data(), events.size(), static_cast<int>(std::min(left, kLongest) * 1e3) + 1);
    if (events[0].revents != 0 || events[1].revents != 0) return false;
    read_all();
  }
}

std::string in_seconds(double seconds) {
  std::ostringstream text;
  text << seconds << " s";
  return text.str();
}

}  // namespace

ChildEnd run_in_child(const std::function<void(const Notes&)>& work, double time_limit) {
  const HeldSignals signals;
  const TemporaryFolder folder;
  Pipe notes;
  Pipe output;
  // Or both processes would print what is still in the buffers.
  std::cout.flush();
  std::fflush(nullptr);

  const pid_t child = fork();
  if (child < 0) fail("fork");
  if (child == 0) {
    signals.release();
    be_child(work, folder.path(), output, Notes(notes.writing_end()));
  }
  // Both do it, since neither knows who comes first.
  setpgid(child, child);
  notes.close_writing_end();
  output.close_writing_end();
  const Descriptor handle = zelhost::end_of(child);

  NotesReader reader;
  CapturedText printed;
  const auto read_all = [&] {
    notes.drain([&reader](std::string_view bytes) { reader.take(bytes); });
    output.drain([&printed](std::string_view bytes) { printed.append(bytes); });
  };
  const bool hung = wait_for(handle, signals, notes, output, time_limit, read_all);
  const int status = zelhost::end_group(child);
  read_all();

  ChildEnd end;
  end.complaints = reader.complaints();
  end.facts = reader.facts();
  end.output = printed.text();
  end.hung = hung;
  if (hung)
    end.complaints.push_back(reader.staged("did not end within " + in_seconds(time_limit)));
  else if (!reader.is_done() || status != 0)
    end.complaints.push_back(reader.staged(zelhost::how_it_ended(status)));
  return end;
}

}  // namespace zelcheck
