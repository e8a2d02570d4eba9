#include "grasp/command/failure.h"

#include <iostream>
#include <new>
#include <string>
#include <system_error>

#include "grasp/command/options.h"
#include "host/error.h"
#include "host/text.h"

namespace grasp::command {
namespace {

int fail(ExitStatus status, const std::string& what) {
  std::cerr << "grasp: " << zelhost::on_one_line(what) << "\n";
  return status;
}

}  // namespace

int report_failures(const std::function<int()>& work) {
  try {
    return work();
  } catch (const UsageError& error) {
    return fail(kExitUsage, error.what());
  } catch (const zelhost::HostError& error) {
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

}  // namespace grasp::command
