// What an exception says.
#pragma once

#include <string>

namespace test_support {

/// The message of the error that a call ends with, or "no error". Errors of other types
/// fail the test.
template <typename Error, typename Call>
std::string message_of(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace test_support
