#include "solver/command/plain_options.h"

#include <string_view>

#include "solver/start/late_constructors.h"

namespace sdpsol {
namespace {

bool is_plain_name(std::string_view name) {
  constexpr std::string_view kFirst =
      "/._0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  return !name.empty() && kFirst.find(name.front()) != std::string_view::npos;
}

/// Takes the name of a file that was not named yet.
bool take_once(std::optional<std::string>& file, std::string_view name) {
  if (file || !is_plain_name(name)) return false;
  file = name;
  return true;
}

}  // namespace

std::optional<Options> read_plain_options(int argc, const char* const* argv) {
  Options options;
  std::optional<std::string> definition;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    const std::string_view next = i + 1 < argc ? argv[i + 1] : "";
    if (word == "-q" || word == "--quiet") {
      options.quiet = true;
    } else if (word == "-o" || word == "--output") {
      if (!take_once(options.result, next)) return std::nullopt;
      ++i;
    } else if (word == "--json") {
      if (!take_once(options.json, next)) return std::nullopt;
      ++i;
    } else if (!take_once(definition, word)) {
      return std::nullopt;
    }
  }
  if (!definition || definition->ends_with(kSdpaSuffix)) return std::nullopt;
  options.definition = *std::move(definition);
  return options;
}

ParsedCommandLine read_command_line(int argc, const char* const* argv) {
  if (auto options = read_plain_options(argc, argv)) return {std::move(options), {}, {}, {}};
  construct_options_library();
  return parse_command_line(argc, argv);
}

}  // namespace sdpsol
