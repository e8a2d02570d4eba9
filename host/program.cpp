#include "host/program.h"

#include <csignal>
#include <exception>
#include <new>
#include <system_error>

#include "host/plugin.h"
#include "host/text.h"

namespace zelhost {

void begin_program() {
  // Beyond the largest size of files a write fails, and is no end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  open_missing_descriptors();
}

int report_failures(const std::string& program, const std::function<int()>& work) {
  const auto fail = [&program](ExitStatus status, const std::string& what) {
    std::cerr << program << ": " << on_one_line(what) << "\n";
    return status;
  };
  try {
    return work();
  } catch (const UsageError& error) {
    return fail(kExitUsage, error.what());
  } catch (const MissingPlugin& error) {
    return fail(kExitFile, std::string("error: ") + error.what());
  } catch (const HostError& error) {
    return fail(kExitFailed, std::string("error: ") + error.what());
  } catch (const std::system_error& error) {
    return fail(kExitFile, std::string("error: ") + error.what());
  } catch (const std::bad_alloc&) {
    return fail(kExitInternal, "out of memory");
  } catch (const std::exception& error) {
    return fail(kExitInternal, std::string("internal error: ") + error.what());
  } catch (...) {
    return fail(kExitInternal, "internal error");
  }
}

}  // namespace zelhost
